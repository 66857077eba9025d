#pragma once

#include <QString>

#include <string>

namespace corvane {

class Desktop;
class MessageBoxes;

// The program's help at a topic: on Windows "CORVANE.chm" from the program folder when it is
// there; elsewhere, or without it, the help page shipped beside the program
// (help/corvane-remote.html), in the desktop's browser. A help that is missing, or that nothing
// on the desktop opens, is said in a box, never passed over.
void showProgramHelp(Desktop& desktop, MessageBoxes& boxes, const std::string& programFolder, const QString& topic);

// Where the help page is looked for, first found first.
QStringList programHelpCandidates(const std::string& programFolder);

} // namespace corvane
