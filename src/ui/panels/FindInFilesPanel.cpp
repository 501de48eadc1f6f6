#include "ui/panels/FindInFilesPanel.h"

#include "app/Services.h"
#include "commands/EditorAtLine.h"
#include "commands/ExternalPrograms.h"
#include "commands/ViewKeys.h"
#include "files/FileItemReader.h"
#include "state/PaneState.h"
#include "ui/panels/FindResultsModel.h"
#include "ui/panels/FocusRing.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QLocale>
#include <QProcess>
#include <QShortcut>
#include <QStackedWidget>
#include <QTimer>
#include <QToolButton>
#include <algorithm>

namespace orwick {

namespace {

constexpr int kTypingPauseMs = 150;

// A switch of the search: its key works anywhere in the panel; Tab reaches it (Space flips it),
// a click leaves the keyboard where it was.
QToolButton* toggle(const QString& text, const QString& tip, const QKeySequence& key, QWidget* panel)
{
    auto* button = new QToolButton(panel);
    button->setText(text);
    button->setToolTip(tip + QStringLiteral(" (") + key.toString(QKeySequence::NativeText) + u')');
    button->setCheckable(true);
    button->setFocusPolicy(Qt::TabFocus);
    new QShortcut(key, panel, button, &QToolButton::toggle, Qt::WidgetWithChildrenShortcut);
    return button;
}

} // namespace

FindInFilesPanel::FindInFilesPanel(PaneState* pane, QWidget* window)
    : PanelSheet(QStringLiteral("Find in Files"), pane->url().abbreviated(), window), m_pane(pane), m_folder(pane->url())
{
    m_field = new QLineEdit(this);
    m_field->setPlaceholderText(QStringLiteral("Text to find in the files of this folder"));
    m_field->setClearButtonEnabled(true);
    m_field->installEventFilter(this);
    m_regex = toggle(QStringLiteral(".*"), QStringLiteral("Regular expression"), ViewKeys::key(ViewKeyAction::findRegularExpression).chords.first(), this);
    m_matchCase = toggle(QStringLiteral("Aa"), QStringLiteral("Match case"), ViewKeys::key(ViewKeyAction::findMatchCase).chords.first(), this);
    auto* row = new QHBoxLayout;
    row->addWidget(m_field, 1);
    row->addWidget(m_regex);
    row->addWidget(m_matchCase);
    body()->addLayout(row);

    m_stack = new QStackedWidget(this);
    m_empty = new QLabel(this);
    m_empty->setAlignment(Qt::AlignCenter);
    m_empty->setWordWrap(true);
    m_empty->setForegroundRole(QPalette::PlaceholderText);
    m_model = new FindResultsModel(this);
    m_delegate = new MatchLineDelegate(this);
    m_list = new QListView(this);
    m_list->setModel(m_model);
    m_list->setItemDelegate(m_delegate);
    m_list->setUniformItemSizes(true);
    // Tab reaches the results, where the field's keys work too; a click leaves the keyboard in the field.
    m_list->setFocusPolicy(Qt::TabFocus);
    m_list->installEventFilter(this);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    connect(m_list, &QListView::clicked, this, [this](const QModelIndex& index) {
        const qint64 match = index.data(FindResultsModel::kMatchIndexRole).toLongLong();
        if (match >= 0)
            setHighlighted(match);
    });
    connect(m_list, &QListView::doubleClicked, this, [this](const QModelIndex& index) {
        if (index.data(FindResultsModel::kMatchIndexRole).toLongLong() >= 0)
            openHighlighted();
    });
    m_stack->addWidget(m_empty);
    m_stack->addWidget(m_list);
    body()->addWidget(m_stack, 1);

    m_pause = new QTimer(this);
    m_pause->setSingleShot(true);
    m_pause->setInterval(kTypingPauseMs);
    connect(m_pause, &QTimer::timeout, this, &FindInFilesPanel::search);
    connect(m_field, &QLineEdit::textEdited, m_pause, qOverload<>(&QTimer::start));
    connect(m_field, &QLineEdit::textChanged, this, [this](const QString& text) {
        if (text.isEmpty()) // the clear button
            m_pause->start();
    });
    connect(m_regex, &QToolButton::toggled, this, [this](bool on) {
        m_options.regex = on;
        search();
    });
    connect(m_matchCase, &QToolButton::toggled, this, [this](bool on) {
        m_options.matchCase = on;
        search();
    });
    showState();
    present(m_field);
}

FindInFilesPanel::~FindInFilesPanel() { stopWork(); }

void FindInFilesPanel::stopWork()
{
    m_pause->stop();
    m_task.cancel();
}

QString FindInFilesPanel::query() const { return m_field->text(); }

void FindInFilesPanel::setQuery(const QString& query)
{
    m_field->setText(query);
    search();
}

void FindInFilesPanel::setOptions(const ContentSearch::Options& options)
{
    const QSignalBlocker a(m_regex), b(m_matchCase);
    m_regex->setChecked(options.regex);
    m_matchCase->setChecked(options.matchCase);
    m_options = options;
    search();
}

void FindInFilesPanel::search()
{
    m_pause->stop();
    const QString query = m_field->text();
    // A new search replaces the results and drops the late output of the one before.
    m_results.clear();
    m_outcome.reset();
    m_highlighted = -1;
    m_searched = query;
    m_delegate->setQuery(query, m_options);
    if (query.isEmpty()) {
        m_task.cancel();
        m_model->update(m_results);
        showState();
        return;
    }
    const TaskSlot::Ticket ticket = m_task.start();
    m_model->update(m_results);
    ContentSearch::startSearch(this, query, m_folder, m_options, ticket.token,
                               [this, ticket](std::vector<ContentSearch::FileMatches>&& batch, bool done,
                                              const ContentSearch::RunOutcome& outcome) {
        if (!m_task.isCurrent(ticket))
            return;
        if (done)
            m_task.finish(ticket);
        receive(std::move(batch), done, outcome);
    }, ContentSearch::kPanelMatchLimit);
    showState();
}

void FindInFilesPanel::receive(std::vector<ContentSearch::FileMatches>&& batch, bool done, const ContentSearch::RunOutcome& outcome)
{
    const bool first = m_results.isEmpty();
    m_results.add(std::move(batch));
    m_model->update(m_results);
    if (first && m_results.matchCount() > 0)
        setHighlighted(0);
    if (done)
        m_outcome = outcome;
    showState();
    if (done)
        Q_EMIT searchFinished();
}

QString FindInFilesPanel::emptyText() const
{
    if (m_field->text().isEmpty())
        return QStringLiteral("Type to search the text of every file in this folder.");
    if (!m_outcome)
        return QStringLiteral("Searching…");
    if (m_outcome->failure)
        return *m_outcome->failure;
    return QStringLiteral("No matches for “%1”").arg(m_searched);
}

void FindInFilesPanel::showState()
{
    m_empty->setText(emptyText());
    m_stack->setCurrentWidget(m_results.isEmpty() ? static_cast<QWidget*>(m_empty) : m_list);
    // The results had the keyboard and there are none now: it goes back to the query rather than
    // resting on the empty text.
    if (m_results.isEmpty() && !isSearching() && m_stack->isAncestorOf(QApplication::focusWidget()))
        m_field->setFocus(Qt::OtherFocusReason);
    updateFooter();
}

void FindInFilesPanel::updateFooter()
{
    const QLocale locale;
    QString text;
    if (!m_results.isEmpty()) {
        const qint64 matches = m_results.matchCount();
        const qsizetype files = qsizetype(m_results.files().size());
        text = (matches == 1 ? QStringLiteral("1 match") : QStringLiteral("%1 matches").arg(locale.toString(matches)))
             + (files == 1 ? QStringLiteral(" in 1 file") : QStringLiteral(" in %1 files").arg(locale.toString(files)));
        if (m_outcome && m_outcome->isCapped)
            text += QStringLiteral(" (the first %1)").arg(locale.toString(ContentSearch::kPanelMatchLimit));
        if (!m_outcome)
            text += QStringLiteral(", searching…");
        text += QStringLiteral(" · ↑↓ move · Return opens · Ctrl+Return opens at the line in the editor");
    } else {
        text = QStringLiteral("Alt+R regular expression · Alt+C match case · Esc closes");
    }
    setFooter(text);
}

void FindInFilesPanel::setHighlighted(qint64 index)
{
    if (index < 0 || index >= m_results.matchCount())
        return;
    m_highlighted = index;
    const int row = m_model->rowOfMatch(index);
    const QModelIndex modelIndex = m_model->index(row);
    m_list->setCurrentIndex(modelIndex);
    m_list->scrollTo(modelIndex);
}

void FindInFilesPanel::moveHighlight(int step)
{
    if (m_results.matchCount() == 0)
        return;
    setHighlighted(std::clamp<qint64>(m_highlighted + step, 0, m_results.matchCount() - 1));
}

std::optional<std::pair<FilePath, qint64>> FindInFilesPanel::highlightedMatch() const
{
    const auto position = m_results.position(m_highlighted);
    if (position.file < 0)
        return std::nullopt;
    const auto& file = m_results.files()[size_t(position.file)];
    return std::pair{file.url, file.matches[size_t(position.match)].line};
}

void FindInFilesPanel::openHighlighted()
{
    const auto match = highlightedMatch();
    if (!match)
        return;
    const FilePath& file = match->first;
    const auto parent = DirectoryHandle::open(file.parent());
    if (!parent) {
        Q_EMIT m_pane->messageRequested(QStringLiteral("Couldn’t open “%1”").arg(file.fileName()));
        return;
    }
    const FileItem item = FileItemReader(file.parent(), parent->fd()).read(file.fileNameBytes());
    Q_EMIT m_pane->openRequested(FileItems{item});
}

void FindInFilesPanel::openHighlightedInEditor()
{
    const auto match = highlightedMatch();
    if (!match)
        return;
    const ExternalPrograms::Program editor = services().programs ? services().programs->editor() : ExternalPrograms::Program{};
    if (editor.isEmpty()) {
        Q_EMIT m_pane->messageRequested(QStringLiteral("No code editor found"));
        return;
    }
    QStringList arguments = editorArgumentsAtLine(editor.id, match->first, match->second);
    QString program = editor.executable;
    if (editor.needsTerminal && services().programs && !services().programs->terminal().isEmpty()) {
        arguments.prepend(editor.executable);
        arguments.prepend(QStringLiteral("-e"));
        program = services().programs->terminal().executable;
    }
    if (!QProcess::startDetached(program, arguments, m_folder.text()))
        Q_EMIT m_pane->messageRequested(QStringLiteral("Couldn’t open %1").arg(editor.name));
}

bool FindInFilesPanel::focusNextPrevChild(bool next)
{
    // Tab goes round the controls in the order they read, and stays in the sheet rather than
    // going on to the panes beneath it.
    // The results take part while they are the page shown (hidden otherwise).
    moveAroundFocusRing({m_field, m_regex, m_matchCase, m_list}, next);
    return true;
}

bool FindInFilesPanel::eventFilter(QObject* watched, QEvent* event)
{
    using A = ViewKeyAction;
    const bool answers = watched == m_field || watched == m_list;
    if (answers && event->type() == QEvent::ShortcutOverride) {
        // Ctrl+Return opens in the editor here, before the window's Open in New Tab.
        if (ViewKeys::matches(A::findEdit, static_cast<QKeyEvent*>(event)->keyCombination())) {
            event->accept();
            return true;
        }
    }
    if (!answers || event->type() != QEvent::KeyPress)
        return PanelSheet::eventFilter(watched, event);
    auto* key = static_cast<QKeyEvent*>(event);
    if (watched == m_list) {
        const bool typing = !key->text().isEmpty() && key->text().front().isPrint()
                         && !(key->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
        if (typing) { // goes on with the query, as typing in a list of results does
            m_field->setFocus(Qt::OtherFocusReason);
            QCoreApplication::sendEvent(m_field, event);
            return true;
        }
    }
    const std::optional<A> action = ViewKeys::actionFor(KeyedView::findInFiles, key->keyCombination());
    if (!action)
        return PanelSheet::eventFilter(watched, event);
    switch (*action) {
    case A::findPrevious: moveHighlight(-1); return true;
    case A::findNext: moveHighlight(1); return true;
    case A::findPageUp: moveHighlight(-10); return true;
    case A::findPageDown: moveHighlight(10); return true;
    // In the query Home and End stay the text's; in the results they go to the ends.
    case A::findFirst:
    case A::findLast:
        if (watched != m_list)
            break;
        setHighlighted(*action == A::findFirst ? 0 : m_results.matchCount() - 1);
        return true;
    case A::findShow:
    case A::findEdit:
        if (m_pause->isActive() || m_searched != m_field->text())
            search(); // Return right after typing searches first
        else if (*action == A::findEdit)
            openHighlightedInEditor();
        else
            openHighlighted();
        return true;
    default: break; // the switches: their shortcuts take them
    }
    return PanelSheet::eventFilter(watched, event);
}

} // namespace orwick
