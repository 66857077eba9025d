#pragma once

#include <QString>

class QUrl;
class QWidget;

namespace corvane {

// What the program asks of the desktop it runs on: the system's folder browser, and the
// desktop's own viewer for a file or page (the help, a browser).
class Desktop {
public:
    virtual ~Desktop() = default;
    // The folder the user picked; empty when the browser was cancelled.
    virtual QString chooseFolder(QWidget* parent, const QString& title) = 0;
    // False when the desktop has nothing that opens it.
    virtual bool openUrl(const QUrl& url) = 0;
};

class SystemDesktop final : public Desktop {
public:
    QString chooseFolder(QWidget* parent, const QString& title) override;
    bool openUrl(const QUrl& url) override;
};

} // namespace corvane
