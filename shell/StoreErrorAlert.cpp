#include "shell/StoreErrorAlert.h"

#include "platform/widgets/Alert.h"

bool presentStoreError(const StoreError& error) {
    Alert alert;
    alert.setMessageText(error.localizedDescription);
    alert.setInformativeText(error.localizedFailureReason);
    alert.setAlertStyle(Alert::Style::Critical);
    alert.addButtonWithTitle(QStringLiteral("OK"));
    alert.runModal();
    return false;
}
