#pragma once

#include "platform/Boxes.h"
#include "platform/FileDialog.h"
#include "platform/ImportProgress.h"

#include <functional>

/// Message boxes that are written down and dismissed at once.
class RecordedBoxes : public Boxes {
public:
    QStringList texts;
    std::function<void()> onShow; ///< Runs while a box stands.

    void show(const QString& text) override
    {
        texts.append(text);
        if (onShow)
            onShow();
    }
};

/// A progress that is written down: "begin 2", the names, "end".
class RecordedProgress : public ImportProgress {
public:
    QStringList steps;
    QString cancelAt; ///< The user cancels ahead of the file of that name.
    std::function<void()> onNext;

    void begin(int count) override { steps.append(QStringLiteral("begin %1").arg(count)); }
    bool next(const QString& name) override
    {
        steps.append(name);
        if (onNext)
            onNext();
        return name != cancelAt;
    }
    void end() override { steps.append(QStringLiteral("end")); }
};

/// A file dialog that ends with the choice of the test; with none it is cancelled.
class ChosenFiles : public FileDialog {
public:
    QStringList paths;
    bool accepted = true;
    std::function<void()> onChoose; ///< Runs while the dialog stands.

    bool choose(QStringList& chosen) override
    {
        if (onChoose)
            onChoose();
        chosen = paths;
        return accepted;
    }
};
