#pragma once

class Tour;

// The steps, in the order in which main.cpp takes them: each finds what those before it left.

// StepsWriting.cpp: one note, written and formatted.
void windowOpens(Tour& tour);
void newNoteTakesTheKeyboard(Tour& tour);
void chineseIsTyped(Tour& tour);
void saveKeyFilesTheNote(Tour& tour);
void boldByItsButton(Tour& tour);
void italicAndUnderlineByTheirKeys(Tour& tour);
void undoAndRedo(Tour& tour);
void headingByItsMenu(Tour& tour);
void bulletedList(Tour& tour);
void tableGrowsAndIsFilled(Tour& tour);
void linkByItsKey(Tour& tour);
void losingTheFocusSaves(Tour& tour);
void characterLimitHolds(Tour& tour);

// StepsNotes.cpp: several notes.
void secondNoteByItsButton(Tour& tour);
void switchingKeepsBothNotes(Tour& tour);
void searchFindsChineseAndEnglish(Tour& tour);
void readOnlyNoteStaysAsItIs(Tour& tour);
void binAndBack(Tour& tour);
void emptyBinDeletesNoteAndFile(Tour& tour);

// StepsKeeping.cpp: nothing is lost.
void restartFindsEverything(Tour& tour);
void deadRenderProcessComesBack(Tour& tour);
void lockedShelfKeepsTheText(Tour& tour);
void killedHostStartsAgain(Tour& tour);
void attachmentOpensOnTheDesktop(Tour& tour);

// StepsFiles.cpp: files become attachments.
void filesAreDroppedFromAFileManager(Tour& tour);
void twoMoreAreChosenInTheDialog(Tour& tour);
void aSecondFileOfThatNameGetsANumber(Tour& tour);
void aFolderAndAnEmptyFileAreRefused(Tour& tour);
void copiedAttachmentsAreFilesElsewhere(Tour& tour);
void filesAndHtmlOfOtherProgramsArePasted(Tour& tour);
void anExportIsOneFileWithPictures(Tour& tour);
void aCardOpensAndARestartKeepsAll(Tour& tour);

// StepsSync.cpp: attachments are edited in other programs.
void anAttachmentIsEditedElsewhere(Tour& tour);
void anAttachmentOfAClosedNoteIsEditedElsewhere(Tour& tour);

// StepsLayout.cpp: the note over the list of its files.
void theBarFoldsAndIsDragged(Tour& tour);
void theListOpensAnAttachment(Tour& tour);
void anAttachmentIsRemovedInTheListAndComesBack(Tour& tour);

// StepsCapture.cpp: a part of the screen becomes a picture.
void aCaptureBecomesAnAttachment(Tour& tour);
void aCaptureGoesToTheClipboard(Tour& tour);
void aCaptureIsSavedAsAFile(Tour& tour);
void aCaptureIsGivenUp(Tour& tour);

// StepsKeeping.cpp again: how it looks elsewhere.
void chineseWindow(Tour& tour);
void darkWindow(Tour& tour);
