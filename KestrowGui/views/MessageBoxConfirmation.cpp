#include "views/MessageBoxConfirmation.h"

#include <QMessageBox>
#include <QPushButton>

namespace kestrow {

bool MessageBoxConfirmation::confirm(const SweepConfirmationRequest& request)
{
    QMessageBox box;
    box.setWindowTitle(QStringLiteral("Kestrow"));
    box.setIcon(QMessageBox::Question);
    box.setText(request.message);
    box.setInformativeText(request.body);
    QAbstractButton* accept = nullptr;
    for (const QString& title : request.buttons) {
        QAbstractButton* button = box.addButton(title, accept ? QMessageBox::RejectRole : QMessageBox::AcceptRole);
        if (!accept)
            accept = button;
    }
    box.exec();
    return accept && box.clickedButton() == accept;
}

} // namespace kestrow
