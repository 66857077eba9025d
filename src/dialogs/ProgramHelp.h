#pragma once

#include <QString>
#include <QUrl>

#include <string>

namespace corvane {

class Desktop;
class MessageBoxes;

// The program's help at a topic: on Windows "CORVANE.chm" from the program folder when it is
// there; elsewhere, or without it, the help page shipped beside the program
// (help/corvane-remote.html), in the desktop's browser. A help that is missing, or that nothing
// on the desktop opens, is said in a box, never passed over.
void showProgramHelp(Desktop& desktop, MessageBoxes& boxes, const std::string& programFolder, const QString& topic);

// Outside Windows, for an address with a section: a small page, new in `folder` (the user's
// runtime folder) and readable by this user only, that forwards the browser to `target`, section
// included; a desktop that opens a file address by its path alone (xdg-open) then still lands on
// the section. This run's previous such page is removed. Without a section, on Windows, or when
// the page cannot be written, `target` itself.
QUrl helpForwardingPage(const QUrl& target, const QString& folder);

// Where the help page is looked for, first found first.
QStringList programHelpCandidates(const std::string& programFolder);

} // namespace corvane
