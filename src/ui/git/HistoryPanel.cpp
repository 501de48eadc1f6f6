#include "ui/git/HistoryPanel.h"

#include "git/Git.h"
#include "state/WindowState.h"
#include "ui/git/ActiveRepository.h"
#include "ui/text/LiteralText.h"
#include "ui/theme/Theme.h"

#include <QFontDatabase>
#include <QKeyEvent>
#include <QListWidget>
#include <QLocale>
#include <QPlainTextEdit>
#include <QSplitter>
#include <QSyntaxHighlighter>
#include <QVBoxLayout>

namespace orwick {

namespace {

// Tints a patch's added and removed lines and dims its headers, in the theme's colours.
class PatchTint : public QSyntaxHighlighter {
public:
    using QSyntaxHighlighter::QSyntaxHighlighter;

protected:
    void highlightBlock(const QString& line) override
    {
        QTextCharFormat format;
        if (line.startsWith(QLatin1StringView("+++")) || line.startsWith(QLatin1StringView("---"))
            || line.startsWith(QLatin1StringView("diff ")) || line.startsWith(QLatin1StringView("index ")))
            format.setForeground(theme::dimText());
        else if (line.startsWith(u'+'))
            format.setForeground(theme::positive());
        else if (line.startsWith(u'-'))
            format.setForeground(theme::negative());
        else if (line.startsWith(QLatin1StringView("@@")))
            format.setForeground(theme::informative());
        else
            return;
        setFormat(0, int(line.size()), format);
    }
};

} // namespace

PanelSheet* HistoryPanel::open(WindowState& window, QWidget* parent)
{
    const std::optional<ActiveRepository> repository = takeActiveRepository(window, parent);
    if (!repository)
        return nullptr;
    const QList<FilePath> selected = window.selectedURLs();
    std::optional<FilePath> file;
    if (selected.size() == 1 && repository->root.isAncestorOf(selected.first()))
        file = selected.first();
    return new HistoryPanel(*repository->git, repository->root, file, parent);
}

HistoryPanel::HistoryPanel(Git& git, const FilePath& root, std::optional<FilePath> file, QWidget* parent)
    : PanelSheet(QStringLiteral("History"), file ? relativeText(root, *file) : root.abbreviated(), parent), m_actions(git),
      m_root(root), m_file(std::move(file))
{
    auto* split = new QSplitter(Qt::Horizontal, this);
    m_list = new QListWidget(split);
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->installEventFilter(this);
    m_patch = new QPlainTextEdit(split);
    m_patch->setReadOnly(true);
    m_patch->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_patch->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_patch->setPlaceholderText(QStringLiteral("Return shows the commit's changes"));
    new PatchTint(m_patch->document());
    split->addWidget(m_list);
    split->addWidget(m_patch);
    split->setSizes({420, 700});
    body()->addWidget(split, 1);
    setFooter(QStringLiteral("Reading the history…"));
    m_actions.log(m_root, m_file, 500, this, [this](Result<QList<GitCommit>> commits) {
        m_loaded = true;
        if (!commits) {
            setFooter(commits.error());
            return;
        }
        m_commits = *commits;
        const QLocale locale;
        for (const GitCommit& commit : m_commits) {
            auto* item = new QListWidgetItem(literalText(commit.shortHash + QStringLiteral("  ") + commit.subject), m_list);
            item->setToolTip(literalText(commit.author + QStringLiteral(", ") + locale.toString(commit.date, QLocale::ShortFormat)));
        }
        m_list->setCurrentRow(0);
        setFooter(m_commits.isEmpty() ? QStringLiteral("No commits yet")
                                      : QStringLiteral("%1 commits · Return shows a commit's changes · Esc closes")
                                            .arg(QLocale().toString(m_commits.size())));
    });
    present(m_list);
}

QString HistoryPanel::patchText() const { return m_patch->toPlainText(); }

void HistoryPanel::showPatch()
{
    const int row = m_list->currentRow();
    if (row < 0 || row >= m_commits.size())
        return;
    const quint64 generation = ++m_generation;
    m_actions.show(m_root, m_commits[row].hash, m_file, this, [this, generation](Result<GitDiff> patch) {
        if (generation != m_generation)
            return;
        if (!patch) {
            m_patch->setPlainText(patch.error());
            return;
        }
        m_patch->setPlainText(patch->note.isEmpty() ? patch->text : patch->text + u'\n' + patch->note);
    });
}

bool HistoryPanel::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_list && (event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride)) {
        auto* key = static_cast<QKeyEvent*>(event);
        if ((key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) && key->modifiers() == Qt::NoModifier) {
            // Before the window's own Return (Open).
            if (event->type() == QEvent::ShortcutOverride)
                event->accept();
            else
                showPatch();
            return true;
        }
    }
    return PanelSheet::eventFilter(watched, event);
}

} // namespace orwick
