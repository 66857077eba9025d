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

// Every key the text box gets is discarded, on its way down as on its way in.
bool frmPathZoom::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == ui->txtZoom
        && (event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride
            || event->type() == QEvent::InputMethod))
        return true;
    return QDialog::eventFilter(watched, event);
}

} // namespace corvane
