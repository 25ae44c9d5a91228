// Licence of this machine: its state, activating a key, giving it back, and both by files where there is no
// network.
#pragma once

#include "licensing/LicenceOperations.h"
#include "ui/common/TitledDialog.h"

class QLineEdit;
class QProgressBar;

namespace pointloom {

/// `isLicensed` of the session follows each outcome.
class LicenceDialog : public TitledDialog {
    Q_OBJECT

public:
    LicenceDialog(const UiContext& context, LicenceManager& manager, QWidget* parent);

    /// Cancels the operation under way and closes after its end.
    void reject() override;

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    enum class Operation { read, activate, deactivate, writeRequest, importFile };

    QWidget* makeState();
    QWidget* makeKeyEntry();
    QWidget* makeOffline();
    void putTextsIn();
    void follow();
    void showHint();
    void showState(const LicenceStatus& status);
    void showOutcome();
    bool hasWholeKey() const;

    void activate();
    void deactivate();
    void writeRequest();
    void importFile();

    LicenceOperations m_operations;
    Operation m_operation = Operation::read; // under way, or the last
    bool m_isClosing = false;

    QLabel* m_stateIcon;
    QLabel* m_state;
    QLabel* m_key;
    QPushButton* m_deactivate;
    QWidget* m_entry;
    QLabel* m_entryTitle;
    QLineEdit* m_entryField;
    QLabel* m_entryHint;
    QPushButton* m_activate;
    QWidget* m_offline;
    QLabel* m_offlineTitle;
    QLabel* m_offlineText;
    QPushButton* m_writeRequest;
    QPushButton* m_importFile;
    QWidget* m_progressRow;
    QLabel* m_progressText;
    QPushButton* m_cancel;
    QLabel* m_outcome;
};

}
