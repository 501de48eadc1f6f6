#include "ui/terminal/TerminalPanel.h"

#include "state/TabState.h"
#include "terminal/TabTerminals.h"
#include "terminal/TerminalSession.h"
#include "ui/text/LiteralText.h"
#include "ui/terminal/TerminalView.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QStackedWidget>
#include <QTabBar>
#include <QToolButton>
#include <QVBoxLayout>

namespace orwick {

TerminalPanel::TerminalPanel(TabTerminals* terminals, QWidget* parent) : QWidget(parent), m_terminals(terminals)
{
    setObjectName(QStringLiteral("terminalPanel"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    auto* header = new QHBoxLayout;
    header->setContentsMargins(4, 0, 4, 0);
    header->setSpacing(2);
    m_tabs = new QTabBar(this);
    m_tabs->setDocumentMode(true);
    m_tabs->setTabsClosable(true);
    m_tabs->setExpanding(false);
    m_tabs->setFocusPolicy(Qt::NoFocus);
    m_tabs->setElideMode(Qt::ElideMiddle);
    auto* add = new QToolButton(this);
    add->setText(QStringLiteral("+"));
    add->setToolTip(QStringLiteral("New Terminal"));
    add->setAutoRaise(true);
    add->setFocusPolicy(Qt::NoFocus);
    header->addWidget(m_tabs, 1);
    header->addWidget(add);
    layout->addLayout(header);
    m_stack = new QStackedWidget(this);
    layout->addWidget(m_stack, 1);

    connect(add, &QToolButton::clicked, this, [this] {
        m_terminals->newTerminal(m_terminals->tab()->activePane()->url());
        m_terminals->requestFocus();
    });
    connect(m_tabs, &QTabBar::currentChanged, this, [this](int index) {
        if (!m_syncing && index >= 0 && index < m_terminals->sessions().size())
            m_terminals->select(m_terminals->sessions()[index]);
    });
    connect(m_tabs, &QTabBar::tabCloseRequested, this, [this](int index) {
        if (index >= 0 && index < m_terminals->sessions().size())
            m_terminals->closeTerminal(m_terminals->sessions()[index]);
    });
    connect(terminals, &TabTerminals::sessionsChanged, this, &TerminalPanel::syncSessions);
    connect(terminals, &TabTerminals::selectedChanged, this, &TerminalPanel::showSelected);
    connect(terminals, &TabTerminals::focusRequested, this, &TerminalPanel::focusTerminal);
    connect(terminals, &TabTerminals::focusToggleRequested, this, [this] {
        if (TerminalView* view = currentView(); view && view->hasFocus())
            Q_EMIT paneFocusRequested();
        else
            focusTerminal();
    });
    syncSessions();
}

TerminalView* TerminalPanel::currentView() const { return qobject_cast<TerminalView*>(m_stack->currentWidget()); }

TerminalView* TerminalPanel::viewFor(TerminalSession* session) const { return m_views.value(session); }

void TerminalPanel::focusTerminal()
{
    if (TerminalView* view = currentView(); view && isVisible())
        view->setFocus(Qt::OtherFocusReason);
    else if (view)
        QMetaObject::invokeMethod(this, [this] { // the panel is being shown: once it is there
            if (TerminalView* shown = currentView())
                shown->setFocus(Qt::OtherFocusReason);
        }, Qt::QueuedConnection);
}

void TerminalPanel::syncSessions()
{
    m_syncing = true;
    const QList<TerminalSession*>& sessions = m_terminals->sessions();
    for (auto it = m_views.begin(); it != m_views.end();) {
        if (!sessions.contains(it.key())) {
            if (it.value())
                it.value()->deleteLater();
            it = m_views.erase(it);
        } else {
            ++it;
        }
    }
    for (TerminalSession* session : sessions) {
        if (m_views.contains(session))
            continue;
        auto* view = new TerminalView(session, m_stack);
        m_stack->addWidget(view);
        m_views.insert(session, view);
        connect(session, &TerminalSession::titleChanged, this, &TerminalPanel::updateTitles);
        connect(session, &TerminalSession::folderReported, this, &TerminalPanel::updateTitles);
    }
    while (m_tabs->count() > sessions.size())
        m_tabs->removeTab(m_tabs->count() - 1);
    while (m_tabs->count() < sessions.size())
        m_tabs->addTab(QString());
    m_syncing = false;
    updateTitles();
    showSelected();
}

void TerminalPanel::showSelected()
{
    TerminalSession* selected = m_terminals->selected();
    const bool hadFocus = isAncestorOf(QApplication::focusWidget());
    m_syncing = true;
    m_tabs->setCurrentIndex(int(m_terminals->sessions().indexOf(selected)));
    m_syncing = false;
    if (TerminalView* view = m_views.value(selected)) {
        m_stack->setCurrentWidget(view);
        if (hadFocus)
            view->setFocus(Qt::OtherFocusReason);
    }
}

void TerminalPanel::updateTitles()
{
    const QList<TerminalSession*>& sessions = m_terminals->sessions();
    for (int i = 0; i < sessions.size() && i < m_tabs->count(); ++i) {
        m_tabs->setTabText(i, literalText(sessions[i]->title()));
        m_tabs->setTabToolTip(i, sessions[i]->folder().abbreviated());
    }
}

} // namespace orwick
