#pragma once
// ServerSheet: "Connect to Server…" — an address field over the recent servers, and, when the
// server asks, its question in the same sheet: user, domain and password fields, or a list of
// choices. Connecting runs a ServerConnection (never blocking the window); once the server is
// mounted its folder opens in the active pane, the address joins the recent list and the sheet
// closes. A refused password, a server that doesn't answer, a wrong address: the sheet stays
// open with the address as typed and says what went wrong.
//
// Keys: Return connects (or answers), Esc cancels the attempt and closes, Down moves from the
// address into the recent list, Delete there forgets the address. The sheet asks the window's
// WindowState only to navigate and to show the toast.

#include "servers/ServerConnection.h"

#include <QDialog>

class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;

namespace orwick {

class WindowState;

class ServerSheet : public QDialog {
    Q_OBJECT
public:
    ServerSheet(WindowState* state, QWidget* window);

    // Opens a sheet over `window` each time `state` asks to connect to a server.
    static void follow(WindowState* state, QWidget* window);

    QLineEdit* addressField() const { return m_address; }
    QListWidget* recentList() const { return m_recent; }
    QLineEdit* passwordField() const { return m_password; }
    QLabel* statusLabel() const { return m_status; }
    ServerConnection* connection() { return &m_connection; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void reject() override;

private:
    void proceed();
    void connectTo(const QString& text);
    void showPasswordRequest(const ServerConnection::PasswordRequest& request);
    void showQuestion(const QString& message, const QStringList& choices);
    void showConnected(const FilePath& localPath);
    void showFailure(const QString& message);
    void showStatus(const QString& text, bool isError);
    void setAsking(bool credentials, bool question);
    void fillRecent();

    WindowState* m_state;
    ServerConnection m_connection;
    QLineEdit* m_address;
    QListWidget* m_recent;
    QLabel* m_recentTitle;
    QWidget* m_credentials;
    QLabel* m_credentialsMessage;
    QLineEdit* m_user;
    QLineEdit* m_domain;
    QLabel* m_domainLabel;
    QLineEdit* m_password;
    QWidget* m_question;
    QLabel* m_questionMessage;
    QListWidget* m_choices;
    QLabel* m_status;
    QPushButton* m_connect;
};

} // namespace orwick
