#include "dialogs/frmGenMsgBox.h"

#include "ui_frmGenMsgBox.h"
#include "widgets/ScreenFit.h"

#include <QApplication>
#include <QFontMetrics>
#include <QOperatingSystemVersion>
#include <QPushButton>
#include <QScreen>
#include <QStyle>
#include <QStyleFactory>
#include <QSysInfo>

namespace corvane {
namespace {

QStyle::StandardPixmap pixmapOf(std::int16_t icon)
{
    switch (icon) {
    case msg::Critical:
        return QStyle::SP_MessageBoxCritical;
    case msg::Question:
        return QStyle::SP_MessageBoxQuestion;
    case msg::Exclamation:
        return QStyle::SP_MessageBoxWarning;
    default:
        return QStyle::SP_MessageBoxInformation;
    }
}

// The older generation's pictures come from the classic style, the newer from the program's own.
QStyle* olderGenerationStyle()
{
    static QStyle* style = [] {
        QStyle* s = QStyleFactory::create(QStringLiteral("Windows"));
        return s ? s : QApplication::style();
    }();
    return style;
}

// 4500 twips at the desktop's 15 twips a pixel.
constexpr int MessageWidth = 300;

} // namespace

frmGenMsgBox::frmGenMsgBox(const QString& text, std::int16_t style, const QString& title,
    const std::vector<MessageButton>& customButtons, double version, QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::frmGenMsgBox>())
{
    ui->setupUi(this);
    dressAsBox(*this);
    setWindowTitle(title);
    ui->lblMsg->setText(text);

    // Buttons: the first exists already; the rest are made beside it.
    const std::vector<MessageButton> set = messageButtons(style, customButtons);
    buttons_.push_back(ui->cmdButton_0);
    for (std::size_t i = 1; i < set.size(); ++i) {
        auto* button = new QPushButton(this);
        button->setObjectName(QStringLiteral("cmdButton_%1").arg(i));
        button->setAutoDefault(false);
        ui->layButtons->insertWidget(ui->layButtons->indexOf(buttons_.back()) + 1, button);
        buttons_.push_back(button);
    }
    for (std::size_t i = 0; i < buttons_.size(); ++i) {
        const std::int16_t result = i < set.size() ? set[i].result : 0;
        if (i < set.size())
            buttons_[i]->setText(QString::fromLatin1(set[i].caption.c_str()));
        connect(buttons_[i], &QPushButton::clicked, this, [this, result] {
            pressed_ = result;
            accept();
        });
    }
    defaultButton_ = defaultButtonIndex(style);
    cancel_ = cancelAnswer(set);

    // Display generation: text size and icon set.
    const bool newer = isNewerDisplayGeneration(version);
    QFont font = ui->lblMsg->font();
    font.setPointSize(newer ? 8 : 10);
    ui->lblMsg->setFont(font);
    const std::int16_t icon = messageIcon(style);
    const std::pair<QLabel*, std::int16_t> newerSet[] = {{ui->imgIcon95_16, msg::Critical},
        {ui->imgIcon95_32, msg::Question}, {ui->imgIcon95_48, msg::Exclamation}, {ui->imgIcon95_64, msg::Information}};
    const std::pair<QLabel*, std::int16_t> olderSet[] = {{ui->imgIcon31_16, msg::Critical},
        {ui->imgIcon31_32, msg::Question}, {ui->imgIcon31_48, msg::Exclamation}, {ui->imgIcon31_64, msg::Information}};
    for (const auto& [label, value] : newerSet) {
        label->setPixmap(QApplication::style()->standardIcon(pixmapOf(value)).pixmap(32, 32));
        label->setVisible(newer && value == icon);
    }
    for (const auto& [label, value] : olderSet) {
        label->setPixmap(olderGenerationStyle()->standardIcon(pixmapOf(value)).pixmap(32, 32));
        label->setVisible(!newer && value == icon);
    }

    // The text wraps within its 4500 twips (further only for a word longer than that), in lines
    // of like length; the box itself is as wide as its caption needs.
    wrapBalanced(*ui->lblMsg, MessageWidth);
    ui->layForm->addSpacerItem(
        new QSpacerItem(captionWidth(title, fontMetrics()), 0, QSizePolicy::Fixed, QSizePolicy::Fixed));
}

frmGenMsgBox::~frmGenMsgBox() = default;

void frmGenMsgBox::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    // A default button beyond the set is the caller's mistake; the box then has none.
    if (defaultButton_ < static_cast<int>(buttons_.size())) {
        buttons_[static_cast<std::size_t>(defaultButton_)]->setDefault(true);
        buttons_[static_cast<std::size_t>(defaultButton_)]->setFocus();
    }
}

void frmGenMsgBox::reject()
{
    if (!cancel_)
        return;
    pressed_ = cancel_;
    QDialog::reject();
}

void dressAsBox(QDialog& box)
{
    box.setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint
        | Qt::WindowCloseButtonHint);
}

void wrapBalanced(QLabel& label, int preferredWidth)
{
    const QScreen* screen = label.screen() ? label.screen() : QApplication::primaryScreen();
    // Room for the icon, the margins and the frame beside the text.
    const int limit = screen ? screen->availableGeometry().width() - 120 : preferredWidth;
    label.setMaximumWidth(QWIDGETSIZE_MAX);
    label.setFixedWidth(balancedWrapWidth(label.text(), label.fontMetrics(), preferredWidth, limit));
}

int captionWidth(const QString& caption, const QFontMetrics& metrics)
{
    return metrics.horizontalAdvance(caption) + 8 * metrics.height();
}

double systemVersion()
{
    static const double version = [] {
        const auto os = QOperatingSystemVersion::current();
        if (os.type() == QOperatingSystemVersion::Windows)
            return os.majorVersion() + os.minorVersion() / 10.0;
        const QStringList parts = QSysInfo::kernelVersion().split(QLatin1Char('.'));
        const int major = parts.value(0).toInt();
        const int minor = parts.value(1).toInt();
        return major + minor / (minor < 10 ? 10.0 : 100.0);
    }();
    return version;
}

} // namespace corvane
