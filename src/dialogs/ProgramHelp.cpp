#include "dialogs/ProgramHelp.h"

#include "dialogs/MessageBoxes.h"
#include "widgets/Desktop.h"
#include "platform/Latin1.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QUrl>

#ifndef Q_OS_WIN
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace corvane {
namespace {

const QLatin1String HelpPage{"help/corvane-remote.html"};

#ifndef Q_OS_WIN
// This run's last forwarding page, removed when the next is written.
QString& lastForwardingPage()
{
    static QString page;
    return page;
}

// The whole of `bytes` to `fd`, or false.
bool writeAll(int fd, const QByteArray& bytes)
{
    qsizetype done = 0;
    while (done < bytes.size()) {
        const ssize_t n = ::write(fd, bytes.constData() + done, static_cast<size_t>(bytes.size() - done));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return false;
        done += n;
    }
    return true;
}
#endif

} // namespace

QUrl helpForwardingPage(const QUrl& target, const QString& folder)
{
#ifdef Q_OS_WIN
    Q_UNUSED(folder);
    return target;
#else
    if (!target.hasFragment() || folder.isEmpty())
        return target;
    const QString name = QDir(folder).filePath(
        QStringLiteral("corvane-help-%1.html").arg(QRandomGenerator::system()->generate64(), 16, 16, QLatin1Char('0')));
    // A new file of this user's only, never one that is there already nor one behind a link.
    const int fd = ::open(QFile::encodeName(name).constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
        S_IRUSR | S_IWUSR);
    if (fd < 0)
        return target;
    const QString address = target.toString(QUrl::FullyEncoded).toHtmlEscaped();
    const QByteArray page = QStringLiteral("<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\">\n"
                                           "<meta http-equiv=\"refresh\" content=\"0; url=%1\">\n"
                                           "<title>Corvane Remote help</title></head>\n"
                                           "<body><p><a href=\"%1\">Corvane Remote help</a></p></body></html>\n")
                                .arg(address)
                                .toUtf8();
    const bool written = writeAll(fd, page);
    ::close(fd);
    if (!written) {
        ::unlink(QFile::encodeName(name).constData());
        return target;
    }
    if (!lastForwardingPage().isEmpty())
        ::unlink(QFile::encodeName(lastForwardingPage()).constData());
    lastForwardingPage() = name;
    return QUrl::fromLocalFile(name);
#endif
}

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
        if (!path.endsWith(QLatin1String(".chm"))) {
            url.setFragment(topic);
            // The desktop's opener drops a file address's section: a page of this user's own
            // that forwards to it keeps it.
            url = helpForwardingPage(url, QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation));
        }
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
