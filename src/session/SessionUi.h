#pragma once

#include <QString>

#include <cstdint>
#include <string>

namespace corvane {

// What the host session shows and asks. The main window answers with its boxes, label and
// grid; tests answer from a script.
class SessionUi {
public:
    virtual ~SessionUi() = default;
    // A message box with an OK button and the application's title.
    virtual void showMessage(const std::string& text) = 0;
    // A Yes/No question; the pressed button's number (6 Yes, 7 No).
    virtual std::int16_t askYesNo(const std::string& text) = 0;
    virtual void showSocketStatus(const QString& caption, std::uint32_t colour) = 0; // 0x00BBGGRR
    // The port table changed: the grid re-reads its rows and keeps the user's current row.
    virtual void portTableChanged() = 0;
    virtual void rememberGridPosition() = 0;
    // After a disconnect: the grid's remembered row back, then the main window's activation.
    virtual void afterDisconnect() = 0;
    // A serial command was tried on an FTP-type port: the note turns red.
    virtual void notFtpRefused() = 0;
    // The idle log-off has closed the connection: the main window unloads.
    virtual void idleLoggedOff() = 0;
};

// Shows nothing and answers No: for a session that only measures or is measured (benchmarks,
// fuzzing), where nobody is there to see.
class SilentSessionUi : public SessionUi {
public:
    void showMessage(const std::string&) override { }
    std::int16_t askYesNo(const std::string&) override { return 7; }
    void showSocketStatus(const QString&, std::uint32_t) override { }
    void portTableChanged() override { }
    void rememberGridPosition() override { }
    void afterDisconnect() override { }
    void notFtpRefused() override { }
    void idleLoggedOff() override { }
};

// Status label colours, as 0x00BBGGRR values.
inline constexpr std::uint32_t ConnectingColour = 0x0000FFFF; // yellow
inline constexpr std::uint32_t IdleColour = 0x00FFFFFF; // white
inline constexpr std::uint32_t ConnectedColour = 0x0000FF00; // green
inline constexpr std::uint32_t StartColour = 0x0080FF80; // light green, before the first connect

} // namespace corvane
