#include "dialogs/ProgramHelp.h"

#include "dialogs/MessageBoxes.h"
#include "widgets/Desktop.h"
#include "platform/Latin1.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QUrl>

namespace corvane {
namespace {

const QLatin1String HelpPage{"help/corvane-remote.html"};

} // namespace

QStringList programHelpCandidates(const std::string& programFolder)
{
    const QDir programDir(QString::fromStdString(programFolder));
    QStringList candidates;
#ifdef Q_OS_WIN
    candidates << programDir.filePath(QStringLiteral("CORVANE.chm"));
#endif
    candidates << programDir.filePath(HelpPage);
    const QDir beside(QCoreApplication::applicationDirPath());
    if (beside != programDir)
        candidates << beside.filePath(HelpPage);
    // Installed: the programs in bin/, the help in share/corvane-remote/help/.
    candidates << QDir::cleanPath(
        beside.filePath(QStringLiteral("../share/corvane-remote/")) + QLatin1Char('/') + HelpPage);
    return candidates;
}

void showProgramHelp(Desktop& desktop, MessageBoxes& boxes, const std::string& programFolder, const QString& topic)
{
    const std::string title = toLatin1Bytes(QCoreApplication::applicationName());
    const QStringList candidates = programHelpCandidates(programFolder);
    for (const QString& path : candidates) {
        if (!QFileInfo::exists(path))
            continue;
        QUrl url = QUrl::fromLocalFile(path);
        if (!path.endsWith(QLatin1String(".chm")))
            url.setFragment(topic);
        if (!desktop.openUrl(url))
            boxes.MsgBox("Nothing on this desktop opens the help: " + toLatin1Bytes(QDir::toNativeSeparators(path)),
                msg::Exclamation, title);
        return;
    }
    boxes.MsgBox(
        "The help is missing: " + toLatin1Bytes(QDir::toNativeSeparators(candidates.join(QLatin1String(" or ")))),
        msg::Exclamation, title);
}

} // namespace corvane
