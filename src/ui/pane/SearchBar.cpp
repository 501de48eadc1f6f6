#include "ui/pane/SearchBar.h"

#include "state/PaneState.h"

#include <QApplication>
#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>

namespace orwick {

namespace {

template <class Enum>
QComboBox* choiceBox(QWidget* parent, const QString& name, std::initializer_list<Enum> cases, QString (*title)(Enum))
{
    auto* box = new QComboBox(parent);
    box->setAccessibleName(name);
    box->setToolTip(name);
    for (Enum value : cases)
        box->addItem(title(value), int(value));
    box->setFocusPolicy(Qt::StrongFocus);
    return box;
}

void selectData(QComboBox* box, int value)
{
    const int index = box->findData(value);
    if (index >= 0 && index != box->currentIndex()) {
        const QSignalBlocker quiet(box);
        box->setCurrentIndex(index);
    }
}

} // namespace

SearchBar::SearchBar(PaneState* pane, QWidget* parent) : QWidget(parent), m_pane(pane)
{
    using Q = SearchQuery;
    m_field = new QLineEdit(this);
    m_field->setPlaceholderText(QStringLiteral("Search names and text"));
    m_field->setClearButtonEnabled(true);
    m_field->setAccessibleName(QStringLiteral("Search"));
    m_scope = choiceBox(this, QStringLiteral("Where to look"), {Q::Scope::here, Q::Scope::below, Q::Scope::mac}, &Q::scopeTitle);
    m_kind = choiceBox(this, QStringLiteral("Kind"), {Q::Kind::any, Q::Kind::folders, Q::Kind::documents, Q::Kind::images,
                                                       Q::Kind::media, Q::Kind::code, Q::Kind::pdfs}, &Q::kindTitle);
    m_changed = choiceBox(this, QStringLiteral("Changed"), {Q::Changed::any, Q::Changed::today, Q::Changed::week,
                                                             Q::Changed::month, Q::Changed::year}, &Q::changedTitle);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(4, 2, 4, 2);
    layout->setSpacing(4);
    layout->addWidget(m_field, 1);
    layout->addWidget(m_scope);
    layout->addWidget(m_kind);
    layout->addWidget(m_changed);
    setFocusProxy(m_field);
    setVisible(false);
    for (QWidget* part : {static_cast<QWidget*>(m_field), static_cast<QWidget*>(m_scope), static_cast<QWidget*>(m_kind),
                          static_cast<QWidget*>(m_changed)})
        part->installEventFilter(this);

    connect(m_field, &QLineEdit::textChanged, this, [this](const QString& text) {
        if (m_pane)
            m_pane->setSearchText(text);
    });
    connect(m_scope, &QComboBox::currentIndexChanged, this, [this] {
        if (m_pane)
            m_pane->setSearchScope(Q::Scope(m_scope->currentData().toInt()));
    });
    connect(m_kind, &QComboBox::currentIndexChanged, this, [this] {
        if (m_pane)
            m_pane->setSearchKind(Q::Kind(m_kind->currentData().toInt()));
    });
    connect(m_changed, &QComboBox::currentIndexChanged, this, [this] {
        if (m_pane)
            m_pane->setSearchChanged(Q::Changed(m_changed->currentData().toInt()));
    });
    connect(pane, &PaneState::searchOptionsChanged, this, &SearchBar::follow);
    connect(pane, &PaneState::searchFocusRequested, this, &SearchBar::open);
    follow();
}

void SearchBar::open()
{
    if (!m_pane)
        return;
    if (!m_pane->isSearching()) {
        m_pane->focusSearch(); // comes back here through searchFocusRequested
        return;
    }
    follow();
    m_field->setFocus(Qt::ShortcutFocusReason);
    m_field->selectAll();
}

void SearchBar::follow()
{
    if (!m_pane)
        return;
    if (m_field->text() != m_pane->searchText()) {
        const QSignalBlocker quiet(m_field);
        m_field->setText(m_pane->searchText());
    }
    selectData(m_scope, int(m_pane->searchScope()));
    selectData(m_kind, int(m_pane->searchKind()));
    selectData(m_changed, int(m_pane->searchChanged()));
    const bool open = m_pane->isSearching();
    if (open != isVisible()) {
        const bool hadFocus = isAncestorOf(QApplication::focusWidget());
        setVisible(open);
        if (!open && hadFocus)
            Q_EMIT finished();
    }
}

bool SearchBar::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    auto* key = static_cast<QKeyEvent*>(event);
    switch (key->key()) {
    case Qt::Key_Escape:
        if (m_pane)
            m_pane->endSearch(); // follow() hides the bar
        Q_EMIT finished();
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        Q_EMIT finished();
        return true;
    case Qt::Key_Down:
        if (watched == m_field) {
            if (m_pane)
                m_pane->moveCursorIntoRows();
            Q_EMIT finished();
            return true;
        }
        break;
    default: break;
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace orwick
