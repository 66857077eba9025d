#include "widgets/Desktop.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QUrl>

namespace corvane {

QString SystemDesktop::chooseFolder(QWidget* parent, const QString& title)
{
    return QDir::toNativeSeparators(QFileDialog::getExistingDirectory(parent, title));
}

bool SystemDesktop::openUrl(const QUrl& url)
{
    return QDesktopServices::openUrl(url);
}

} // namespace corvane
