#include "dialogs/frmPathZoom.h"

#include "ui_frmPathZoom.h"

#include <QKeyEvent>

namespace corvane {

frmPathZoom::frmPathZoom(const QString& path, QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::frmPathZoom>())
{
    ui->setupUi(this);
    ui->txtZoom->setPlainText(path);
    ui->txtZoom->installEventFilter(this);
    ui->txtZoom->setContextMenuPolicy(Qt::NoContextMenu);
    ui->txtZoom->setAcceptDrops(false);
    connect(ui->cmdClose, &QPushButton::clicked, this, &QDialog::accept);
}

frmPathZoom::~frmPathZoom() = default;

// Every key the text box gets is discarded, on its way down as on its way in; but Tab and
// Shift+Tab leave it and Escape closes the zoom, so that the keyboard is never caught there.
bool frmPathZoom::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == ui->txtZoom && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Tab || key == Qt::Key_Backtab)
            focusNextPrevChild(key == Qt::Key_Tab);
        else if (key == Qt::Key_Escape)
            reject();
        return true;
    }
    if (watched == ui->txtZoom && (event->type() == QEvent::ShortcutOverride || event->type() == QEvent::InputMethod))
        return true;
    return QDialog::eventFilter(watched, event);
}

} // namespace corvane
