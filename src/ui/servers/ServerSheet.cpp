#include "ui/servers/ServerSheet.h"

#include "places/SidebarStore.h"
#include "state/WindowState.h"
#include "ui/theme/Theme.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace orwick {

namespace {

QLabel* dimLabel(const QString& text, QWidget* parent)
{
    auto* label = new QLabel(text, parent);
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, theme::dimText());
    label->setPalette(palette);
    label->setWordWrap(true);
    return label;
}

} // namespace

ServerSheet::ServerSheet(WindowState* state, QWidget* window) : QDialog(window), m_state(state)
{
    setWindowTitle(QStringLiteral("Connect to Server"));
    setObjectName(QStringLiteral("serverSheet"));
    setAttribute(Qt::WA_DeleteOnClose);
    auto* layout = new QVBoxLayout(this);

    auto* heading = new QLabel(QStringLiteral("Connect to Server"), this);
    QFont bold = heading->font();
    bold.setBold(true);
    bold.setPointSizeF(bold.pointSizeF() * 1.15);
    heading->setFont(bold);
    layout->addWidget(heading);
    auto* label = new QLabel(QStringLiteral("Server address:"), this);
    m_address = new QLineEdit(this);
    m_address->setPlaceholderText(QStringLiteral("sftp://example.com/folder"));
    label->setBuddy(m_address);
    layout->addWidget(label);
    layout->addWidget(m_address);
    layout->addWidget(dimLabel(QStringLiteral("sftp://, smb://, dav://, davs:// or ftp:// — with user@ and :port when needed"), this));

    m_recentTitle = new QLabel(QStringLiteral("Recent servers:"), this);
    m_recent = new QListWidget(this);
    m_recent->setMaximumHeight(6 * theme::rowHeight());
    m_recentTitle->setBuddy(m_recent);
    layout->addWidget(m_recentTitle);
    layout->addWidget(m_recent);

    m_credentials = new QWidget(this);
    auto* form = new QFormLayout(m_credentials);
    form->setContentsMargins(0, 0, 0, 0);
    m_credentialsMessage = new QLabel(m_credentials);
    m_credentialsMessage->setWordWrap(true);
    m_user = new QLineEdit(m_credentials);
    m_domain = new QLineEdit(m_credentials);
    m_password = new QLineEdit(m_credentials);
    m_password->setEchoMode(QLineEdit::Password);
    m_domainLabel = new QLabel(QStringLiteral("Domain:"), m_credentials);
    form->addRow(m_credentialsMessage);
    form->addRow(QStringLiteral("User:"), m_user);
    form->addRow(m_domainLabel, m_domain);
    form->addRow(QStringLiteral("Password:"), m_password);
    layout->addWidget(m_credentials);

    m_question = new QWidget(this);
    auto* questionLayout = new QVBoxLayout(m_question);
    questionLayout->setContentsMargins(0, 0, 0, 0);
    m_questionMessage = new QLabel(m_question);
    m_questionMessage->setWordWrap(true);
    m_choices = new QListWidget(m_question);
    questionLayout->addWidget(m_questionMessage);
    questionLayout->addWidget(m_choices);
    layout->addWidget(m_question);

    m_status = new QLabel(this);
    m_status->setObjectName(QStringLiteral("serverStatus"));
    m_status->setWordWrap(true);
    layout->addWidget(m_status);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    m_connect = buttons->addButton(QStringLiteral("Connect"), QDialogButtonBox::AcceptRole);
    m_connect->setDefault(true);
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::rejected, this, &ServerSheet::reject);
    connect(buttons, &QDialogButtonBox::accepted, this, &ServerSheet::proceed);

    connect(m_recent, &QListWidget::currentTextChanged, this, [this](const QString& text) {
        if (!text.isEmpty() && !m_connection.isRunning())
            m_address->setText(text);
    });
    connect(m_recent, &QListWidget::itemActivated, this, [this] { proceed(); });
    connect(m_choices, &QListWidget::itemActivated, this, [this] { proceed(); });
    m_address->installEventFilter(this);
    m_recent->installEventFilter(this);

    connect(&m_connection, &ServerConnection::passwordRequested, this, &ServerSheet::showPasswordRequest);
    connect(&m_connection, &ServerConnection::questionAsked, this, &ServerSheet::showQuestion);
    connect(&m_connection, &ServerConnection::connected, this, &ServerSheet::showConnected);
    connect(&m_connection, &ServerConnection::failed, this, &ServerSheet::showFailure);

    fillRecent();
    if (!SidebarStore::shared().recentServers().isEmpty()) {
        m_address->setText(SidebarStore::shared().recentServers().first());
        m_address->selectAll();
    }
    setAsking(false, false);
    setMinimumWidth(460);
}

void ServerSheet::follow(WindowState* state, QWidget* window)
{
    QObject::connect(state, &WindowState::serverConnectionRequested, window, [state, window] {
        if (window->findChild<ServerSheet*>(QString(), Qt::FindDirectChildrenOnly))
            return; // one sheet per window
        auto* sheet = new ServerSheet(state, window);
        QObject::connect(sheet, &QDialog::finished, window, [window] { window->activateWindow(); });
        sheet->setWindowModality(Qt::WindowModal);
        sheet->open();
        sheet->addressField()->setFocus();
    });
}

void ServerSheet::fillRecent()
{
    m_recent->clear();
    m_recent->addItems(SidebarStore::shared().recentServers());
    m_recent->setVisible(m_recent->count() > 0);
    m_recentTitle->setVisible(m_recent->count() > 0);
}

bool ServerSheet::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        if (watched == m_address && key->key() == Qt::Key_Down && m_recent->isVisible()) {
            m_recent->setFocus();
            m_recent->setCurrentRow(0);
            return true;
        }
        if (watched == m_recent && key->key() == Qt::Key_Up && m_recent->currentRow() <= 0) {
            m_address->setFocus();
            return true;
        }
        if (watched == m_recent && key->key() == Qt::Key_Delete && m_recent->currentItem()) {
            SidebarStore::shared().forgetServer(m_recent->currentItem()->text());
            fillRecent();
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void ServerSheet::proceed()
{
    if (m_credentials->isVisible()) {
        m_connection.answerPassword({m_user->text(), m_domain->text(), m_password->text()});
        m_password->clear(); // the password is not kept once given
        setAsking(false, false);
        showStatus(QStringLiteral("Logging in to “%1”…").arg(m_connection.address().host), false);
        return;
    }
    if (m_question->isVisible()) {
        m_connection.answerChoice(std::max(0, m_choices->currentRow()));
        setAsking(false, false);
        showStatus(QStringLiteral("Connecting to “%1”…").arg(m_connection.address().host), false);
        return;
    }
    if (!m_connection.isRunning())
        connectTo(m_address->text());
}

void ServerSheet::connectTo(const QString& text)
{
    const auto address = ServerAddress::parse(text);
    if (!address) {
        showStatus(address.error(), true);
        m_address->setFocus();
        return;
    }
    m_address->setEnabled(false);
    m_recent->setEnabled(false);
    m_connect->setEnabled(false);
    showStatus(QStringLiteral("Connecting to “%1”…").arg(address->host), false);
    m_connection.start(*address);
}

void ServerSheet::showPasswordRequest(const ServerConnection::PasswordRequest& request)
{
    m_credentialsMessage->setText(request.message.isEmpty() ? QStringLiteral("The server asks you to log in.") : request.message);
    if (m_user->text().isEmpty())
        m_user->setText(request.defaultUser);
    m_user->setEnabled(request.asksUser);
    m_domain->setText(request.defaultDomain);
    m_domain->setVisible(request.asksDomain);
    m_domainLabel->setVisible(request.asksDomain);
    setAsking(true, false);
    showStatus(request.refused ? QStringLiteral("The server refused that user name or password. Try again, or press Esc to stop.")
                               : QString(),
               request.refused);
    (request.asksUser && m_user->text().isEmpty() ? m_user : m_password)->setFocus();
}

void ServerSheet::showQuestion(const QString& message, const QStringList& choices)
{
    m_questionMessage->setText(message);
    m_choices->clear();
    m_choices->addItems(choices);
    m_choices->setCurrentRow(0);
    setAsking(false, true);
    showStatus(QString(), false);
    m_choices->setFocus();
}

void ServerSheet::showConnected(const FilePath& localPath)
{
    const ServerAddress address = m_connection.address();
    SidebarStore::shared().rememberServer(address.toString());
    m_state->activePane()->navigate(localPath);
    Q_EMIT m_state->messageRequested(QStringLiteral("Connected to “%1”").arg(address.displayName()));
    accept();
}

void ServerSheet::showFailure(const QString& message)
{
    setAsking(false, false);
    m_address->setEnabled(true);
    m_recent->setEnabled(true);
    m_connect->setEnabled(true);
    showStatus(message, true);
    m_address->setFocus();
}

void ServerSheet::showStatus(const QString& text, bool isError)
{
    QPalette palette = m_status->palette();
    palette.setColor(QPalette::WindowText, isError ? theme::negative() : theme::dimText());
    m_status->setPalette(palette);
    m_status->setText(text);
    m_status->setVisible(!text.isEmpty());
}

void ServerSheet::setAsking(bool credentials, bool question)
{
    m_credentials->setVisible(credentials);
    m_question->setVisible(question);
    m_connect->setEnabled(credentials || question || !m_connection.isRunning());
    m_connect->setText(credentials ? QStringLiteral("Log In") : question ? QStringLiteral("Answer") : QStringLiteral("Connect"));
    adjustSize();
}

void ServerSheet::reject()
{
    m_connection.cancel();
    QDialog::reject();
}

} // namespace orwick
