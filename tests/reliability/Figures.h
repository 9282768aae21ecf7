#pragma once

#include <string>

/// What the reliability tests have held, survived and tried, counted over the whole run and told at
/// its end, one line each: `figure`, the name, the count, parted by tabs.
namespace figures {

void add(const std::string& name, long count = 1);

/// Keeps the largest value told.
void atLeast(const std::string& name, double value);

/// Whether this is the long run of `./test --deep`: tests that can go on do so for longer.
bool isDeep();

} // namespace figures
