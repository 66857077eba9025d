#pragma once

#include <QObject>

#include <functional>

namespace corvane {

// Sees every key, click, scroll and touch in any window of the program, while it lives, and tells
// `seen`: what the idle log-off counts as someone being there (reading a long table or the
// editor's pages included).
class ActivityWatch final : public QObject {
public:
    explicit ActivityWatch(std::function<void()> seen, QObject* parent = nullptr);
    ~ActivityWatch() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::function<void()> seen_;
};

} // namespace corvane
