#include "Steps.h"
#include "TestDisplay.h"
#include "Tour.h"

#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QGuiApplication>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

struct Step {
    const char* name;
    void (*take)(Tour&);
};

constexpr Step steps[] = {
    {"the window opens and the page is ready", windowOpens},
    {"Ctrl+N makes a note that takes the keyboard", newNoteTakesTheKeyboard},
    {"Chinese is typed", chineseIsTyped},
    {"Ctrl+S files the note under its digest", saveKeyFilesTheNote},
    {"bold by its button", boldByItsButton},
    {"italic and underline by their keys", italicAndUnderlineByTheirKeys},
    {"undo and redo by button and key", undoAndRedo},
    {"a heading by its menu", headingByItsMenu},
    {"a bulleted list", bulletedList},
    {"a table is made, filled and grown", tableGrowsAndIsFilled},
    {"a link by its key", linkByItsKey},
    {"losing the focus saves", losingTheFocusSaves},
    {"the character limit holds and is told", characterLimitHolds},
    {"a second note by the button", secondNoteByItsButton},
    {"switching saves one note and shows the other", switchingKeepsBothNotes},
    {"search finds Chinese and English", searchFindsChineseAndEnglish},
    {"a read-only note stays as it is", readOnlyNoteStaysAsItIs},
    {"a note goes to the bin and comes back", binAndBack},
    {"the emptied bin deletes note and file", emptyBinDeletesNoteAndFile},
    {"quit and restart: everything is where it was", restartFindsEverything},
    {"a killed render process comes back", deadRenderProcessComesBack},
    {"a locked shelf is told and keeps the text", lockedShelfKeepsTheText},
    {"a killed host starts again over its notes", killedHostStartsAgain},
    {"an attachment opens on the desktop", attachmentOpensOnTheDesktop},
    {"files are dropped from a file manager", filesAreDroppedFromAFileManager},
    {"two more are chosen in the dialog", twoMoreAreChosenInTheDialog},
    {"a second file of that name gets a number", aSecondFileOfThatNameGetsANumber},
    {"a folder and an empty file are refused", aFolderAndAnEmptyFileAreRefused},
    {"a copied attachment is a file elsewhere", copiedAttachmentsAreFilesElsewhere},
    {"files and HTML of other programs are pasted", filesAndHtmlOfOtherProgramsArePasted},
    {"the bar folds the list of files and is dragged", theBarFoldsAndIsDragged},
    {"the list of files opens an attachment", theListOpensAnAttachment},
    {"an attachment is removed in the list and comes back",
        anAttachmentIsRemovedInTheListAndComesBack},
    {"an export is one file with its pictures", anExportIsOneFileWithPictures},
    {"a card opens, and a restart keeps all", aCardOpensAndARestartKeepsAll},
    {"an attachment is edited elsewhere", anAttachmentIsEditedElsewhere},
    {"one of a closed note is edited elsewhere", anAttachmentOfAClosedNoteIsEditedElsewhere},
    {"a capture becomes an attachment", aCaptureBecomesAnAttachment},
    {"a capture goes to the clipboard", aCaptureGoesToTheClipboard},
    {"a capture is saved as a file", aCaptureIsSavedAsAFile},
    {"a capture is given up", aCaptureIsGivenUp},
    {"the window in Chinese", chineseWindow},
    {"the window in the dark", darkWindow},
};

// All that the steps type beyond ASCII.
const QString typedCharacters = u"买鸡蛋和牛奶，明天做糕。二数据库设计"_s;

} // namespace

int main(int argc, char* argv[])
{
    // The display comes before the application, which connects to it.
    TestDisplay display;
    if (const QString fault = display.start(typedCharacters); !fault.isEmpty()) {
        std::fprintf(stderr, "nomartour: %s\n", qPrintable(fault));
        return 1;
    }
    QGuiApplication app(argc, argv);
    QCommandLineParser options;
    options.setApplicationDescription(u"Drives the sample host through all that it can do."_s);
    options.addHelpOption();
    options.addOptions({{u"shots"_s, u"Where the pictures go."_s, u"DIR"_s, u"screenshots"_s},
        {u"host"_s, u"The sample host."_s, u"FILE"_s,
            QCoreApplication::applicationDirPath() + u"/nomarhost"_s}});
    options.process(app);

    QElapsedTimer timer;
    timer.start();
    int taken = 0, failed = 0;
    {
        Tour tour(options.value(u"host"_s), options.value(u"shots"_s));
        for (const Step& step : steps) {
            ++taken;
            if (tour.run(step.name, step.take))
                continue;
            ++failed;
            // What is left of a failed step may trip the next ones, but without a page none can be
            // taken.
            if (!tour.page(u"true"_s).toBool())
                break;
        }
    }
    std::printf("%d of %d steps taken, %d failed, %.1f s\n", taken, int(std::size(steps)), failed,
        double(timer.elapsed()) / 1000);
    return failed == 0 ? 0 : 1;
}
