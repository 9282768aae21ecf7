#include "platform/EngineFlags.h"
#include "kit/Print.h"

#include <gtest/gtest.h>

TEST(EngineFlags, ArePutBehindWhatTheHostHasSet)
{
    const struct {
        const char* before;
        const char* after;
    } cases[] = {
        {"", "--enable-blink-features=HighlightAPI"},
        {"--no-sandbox", "--no-sandbox --enable-blink-features=HighlightAPI"},
        {"--enable-blink-features=A --x", "--enable-blink-features=A,HighlightAPI --x"},
        // Of two flags with one name the engine takes the last.
        {"--enable-blink-features=A --enable-blink-features=B",
            "--enable-blink-features=A --enable-blink-features=B,HighlightAPI"},
        {"--enable-blink-features=HighlightAPI", "--enable-blink-features=HighlightAPI"},
        {"--enable-blink-features=A,HighlightAPI,B", "--enable-blink-features=A,HighlightAPI,B"},
        // A host that has turned it off keeps it off.
        {"--disable-blink-features=HighlightAPI", "--disable-blink-features=HighlightAPI"},
        {"--disable-blink-features=A",
            "--disable-blink-features=A --enable-blink-features=HighlightAPI"},
    };
    for (const auto& [before, after] : cases)
        EXPECT_EQ(WithEngineFeatures(QString::fromLatin1(before)), QString::fromLatin1(after));
}

TEST(EngineFlags, AreInTheEnvironmentWhenTheLibraryIsLoaded)
{
    EXPECT_TRUE(qEnvironmentVariable("QTWEBENGINE_CHROMIUM_FLAGS")
                    .contains(QStringLiteral("HighlightAPI")));
}
