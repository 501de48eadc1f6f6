#include "ui/rename/BatchRenamePanel.h"

#include "fileops/FileOperations.h"
#include "rename/RenamePreview.h"
#include "state/FileActions.h"
#include "state/PaneState.h"
#include "state/WindowState.h"
#include "ui/rename/BatchRenameModel.h"
#include "ui/rename/BatchRenameRowDelegate.h"
#include "ui/theme/Theme.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QSet>
#include <QSpinBox>
#include <QStackedWidget>

namespace orwick {

namespace {

QLabel* dimLabel(const QString& text, QWidget* parent)
{
    auto* label = new QLabel(text, parent);
    label->setForegroundRole(QPalette::PlaceholderText);
    label->setWordWrap(true);
    return label;
}

QCheckBox* checkBox(const QString& text, const QString& name, QWidget* parent)
{
    auto* box = new QCheckBox(text, parent);
    box->setObjectName(name);
    return box;
}

} // namespace

PanelSheet* BatchRenamePanel::open(WindowState& state, QWidget* window)
{
    if (state.panelItems().size() < 2)
        return nullptr;
    PanelSheet::closeOpenSheet(window);
    return new BatchRenamePanel(state, window);
}

BatchRenamePanel::BatchRenamePanel(WindowState& state, QWidget* window)
    : PanelSheet(batchRenameTitle(state.panelItems().size()), state.panelFolder().abbreviated(), window),
      m_state(state), m_pane(state.activePane())
{
    setObjectName(QStringLiteral("batchRenamePanel"));
    setWindowIcon(QIcon::fromTheme(QStringLiteral("edit-rename")));
    m_model = new BatchRenameModel(state.panelItems(), this);
    connect(m_model, &BatchRenameModel::previewChanged, this, &BatchRenamePanel::previewChanged);

    auto* modeRow = new QHBoxLayout;
    m_mode = new QComboBox(this);
    m_mode->setObjectName(QStringLiteral("mode"));
    for (const BatchRename::Mode mode : BatchRename::modes())
        m_mode->addItem(BatchRename::modeText(mode));
    auto* modeLabel = new QLabel(QStringLiteral("&Mode"), this);
    modeLabel->setBuddy(m_mode);
    modeRow->addWidget(modeLabel);
    modeRow->addWidget(m_mode);
    modeRow->addWidget(dimLabel(QStringLiteral("Ctrl+1…Ctrl+6"), this), 1);
    body()->addLayout(modeRow);

    m_pages = new QStackedWidget(this);
    for (QWidget* page : {replacePage(), addPage(), numberPage(), casePage(), templatePage(), removePage()})
        m_pages->addWidget(page);
    m_pages->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
    body()->addWidget(m_pages);
    m_ruleProblem = new QLabel(this);
    m_ruleProblem->setObjectName(QStringLiteral("ruleProblem"));
    QPalette problemPalette = m_ruleProblem->palette();
    problemPalette.setColor(QPalette::WindowText, theme::negative());
    m_ruleProblem->setPalette(problemPalette);
    m_ruleProblem->hide();
    body()->addWidget(m_ruleProblem);

    m_list = new QListView(this);
    m_list->setObjectName(QStringLiteral("preview"));
    m_list->setModel(m_model);
    m_list->setItemDelegate(new BatchRenameRowDelegate(m_list));
    m_list->setUniformItemSizes(true);
    m_list->setSelectionMode(QAbstractItemView::NoSelection);
    m_list->setFocusPolicy(Qt::ClickFocus); // scrolled by the mouse; Tab stays among the fields
    body()->addWidget(m_list, 1);

    auto* buttons = new QHBoxLayout;
    m_summary = new QLabel(this);
    m_summary->setObjectName(QStringLiteral("summary"));
    m_cancel = new QPushButton(QStringLiteral("Cancel"), this);
    m_cancel->setObjectName(QStringLiteral("cancelButton"));
    m_rename = new QPushButton(this);
    m_rename->setObjectName(QStringLiteral("renameButton"));
    m_rename->setDefault(true);
    connect(m_cancel, &QPushButton::clicked, this, &PanelSheet::closeSheet);
    connect(m_rename, &QPushButton::clicked, this, &BatchRenamePanel::commit);
    buttons->addWidget(m_summary, 1);
    buttons->addWidget(m_cancel);
    buttons->addWidget(m_rename);
    body()->addLayout(buttons);
    setFooter(QStringLiteral("Return renames, Esc cancels. One undo step puts every name back."));

    connect(m_mode, &QComboBox::currentIndexChanged, this, &BatchRenamePanel::showMode);
    m_rename->setText(QStringLiteral("Rename 0"));
    showMode(0);
    for (QWidget* part : findChildren<QWidget*>())
        if (part->focusPolicy() != Qt::NoFocus)
            part->installEventFilter(this);
    installEventFilter(this);
    present();
}

BatchRenamePanel::~BatchRenamePanel() = default;

QLineEdit* BatchRenamePanel::field(const QString& name, const QString& placeholder, QString BatchRename::*member)
{
    auto* edit = new QLineEdit(this);
    edit->setObjectName(name);
    edit->setPlaceholderText(placeholder);
    edit->setText(m_rule.*member);
    edit->setClearButtonEnabled(true);
    connect(edit, &QLineEdit::textEdited, this, [this, member](const QString& text) {
        m_rule.*member = text;
        ruleChanged();
    });
    return edit;
}

QSpinBox* BatchRenamePanel::startAtField()
{
    auto* spin = new QSpinBox(this);
    spin->setObjectName(QStringLiteral("startAt"));
    spin->setRange(0, 999999999);
    spin->setValue(m_rule.startAt);
    m_startAtFields.append(spin);
    connect(spin, &QSpinBox::valueChanged, this, [this](int value) {
        if (m_rule.startAt == value)
            return;
        m_rule.startAt = value;
        for (QSpinBox* other : m_startAtFields)
            if (other->value() != value)
                other->setValue(value);
        ruleChanged();
    });
    return spin;
}

QWidget* BatchRenamePanel::replacePage()
{
    auto* page = new QWidget(this);
    auto* form = new QFormLayout(page);
    form->setContentsMargins(0, 0, 0, 0);
    m_firstFields.push_back(field(QStringLiteral("find"), QString(), &BatchRename::find));
    form->addRow(QStringLiteral("Find"), m_firstFields.back());
    form->addRow(QStringLiteral("Replace with"), field(QStringLiteral("replacement"), QString(), &BatchRename::replacement));
    auto* options = new QHBoxLayout;
    auto* ignoreCase = checkBox(QStringLiteral("Ignore case"), QStringLiteral("ignoreCase"), page);
    auto* regex = checkBox(QStringLiteral("Regular expression"), QStringLiteral("regex"), page);
    options->addWidget(ignoreCase);
    options->addWidget(regex);
    options->addStretch(1);
    form->addRow(QString(), options);
    m_regexHelp = dimLabel(QStringLiteral("Find is a pattern; use $1, $2… in the replacement for what it captured"), page);
    m_regexHelp->hide();
    form->addRow(QString(), m_regexHelp);
    connect(ignoreCase, &QCheckBox::toggled, this, [this](bool on) {
        m_rule.ignoresCase = on;
        ruleChanged();
    });
    connect(regex, &QCheckBox::toggled, this, [this](bool on) {
        m_rule.usesRegex = on;
        m_regexHelp->setVisible(on);
        ruleChanged();
    });
    return page;
}

QWidget* BatchRenamePanel::addPage()
{
    auto* page = new QWidget(this);
    auto* form = new QFormLayout(page);
    form->setContentsMargins(0, 0, 0, 0);
    m_firstFields.push_back(field(QStringLiteral("text"), QString(), &BatchRename::text));
    form->addRow(QStringLiteral("Text to add"), m_firstFields.back());
    auto* atEnd = checkBox(QStringLiteral("Add after the name, before the extension"), QStringLiteral("addAtEnd"), page);
    connect(atEnd, &QCheckBox::toggled, this, [this](bool on) {
        m_rule.addsAtEnd = on;
        ruleChanged();
    });
    form->addRow(QString(), atEnd);
    return page;
}

QWidget* BatchRenamePanel::numberPage()
{
    auto* page = new QWidget(this);
    auto* form = new QFormLayout(page);
    form->setContentsMargins(0, 0, 0, 0);
    m_firstFields.push_back(field(QStringLiteral("baseName"), QString(), &BatchRename::baseName));
    form->addRow(QStringLiteral("Name (empty keeps each one's)"), m_firstFields.back());
    form->addRow(QStringLiteral("Start at"), startAtField());
    return page;
}

QWidget* BatchRenamePanel::casePage()
{
    auto* page = new QWidget(this);
    auto* form = new QFormLayout(page);
    form->setContentsMargins(0, 0, 0, 0);
    auto* letterCase = new QComboBox(page);
    letterCase->setObjectName(QStringLiteral("letterCase"));
    m_firstFields.push_back(letterCase);
    for (const auto each : {BatchRename::LetterCase::lower, BatchRename::LetterCase::upper, BatchRename::LetterCase::title})
        letterCase->addItem(BatchRename::letterCaseText(each), int(each));
    connect(letterCase, &QComboBox::currentIndexChanged, this, [this, letterCase] {
        m_rule.letterCase = BatchRename::LetterCase(letterCase->currentData().toInt());
        ruleChanged();
    });
    form->addRow(QStringLiteral("Make names"), letterCase);
    form->addRow(QString(), dimLabel(QStringLiteral("The extension keeps its case."), page));
    return page;
}

QWidget* BatchRenamePanel::templatePage()
{
    auto* page = new QWidget(this);
    auto* form = new QFormLayout(page);
    form->setContentsMargins(0, 0, 0, 0);
    m_firstFields.push_back(field(QStringLiteral("template"), QStringLiteral("{name}"), &BatchRename::templateText));
    form->addRow(QStringLiteral("Template"), m_firstFields.back());
    form->addRow(QString(), dimLabel(QStringLiteral("Fields: {name} {ext} {n} {date:yyyy-MM-dd} {parent}. The extension is kept; "
                                                    "{n} counts from Start at."), page));
    form->addRow(QStringLiteral("Start at"), startAtField());
    return page;
}

QWidget* BatchRenamePanel::removePage()
{
    auto* page = new QWidget(this);
    auto* form = new QFormLayout(page);
    form->setContentsMargins(0, 0, 0, 0);
    m_firstFields.push_back(field(QStringLiteral("characters"), QStringLiteral("_-"), &BatchRename::characters));
    form->addRow(QStringLiteral("Characters to remove"), m_firstFields.back());
    form->addRow(QString(), dimLabel(QStringLiteral("Each of these characters goes from every name; the extension stays."), page));
    return page;
}

void BatchRenamePanel::showMode(int index)
{
    m_rule.mode = BatchRename::modes()[size_t(index)];
    m_pages->setCurrentIndex(index);
    if (m_mode->currentIndex() != index)
        m_mode->setCurrentIndex(index);
    // The mode's first field takes the keys, unless they are choosing in the mode list.
    if (!m_mode->hasFocus() && size_t(index) < m_firstFields.size())
        m_firstFields[size_t(index)]->setFocus(Qt::ShortcutFocusReason);
    ruleChanged();
}

void BatchRenamePanel::ruleChanged()
{
    if (m_finished)
        return;
    m_model->setRule(m_rule);
    const QString& problem = m_model->renamer().problem();
    m_ruleProblem->setText(problem);
    m_ruleProblem->setVisible(!problem.isEmpty());
    m_rename->setEnabled(false); // until the preview of this rule is in
}

void BatchRenamePanel::previewChanged()
{
    const RenamePreview& preview = m_model->preview();
    m_summary->setText(preview.summary());
    m_rename->setText(QStringLiteral("Rename %1").arg(preview.changing));
    m_rename->setEnabled(canCommit());
}

QString BatchRenamePanel::summary() const { return m_summary->text(); }

bool BatchRenamePanel::canCommit() const
{
    return !m_committing && !m_finished && !m_model->isPending() && m_model->preview().ruleProblem.isEmpty()
        && m_model->preview().changing > 0;
}

void BatchRenamePanel::commit()
{
    if (!canCommit())
        return;
    FileOperations* operations = m_state.files().operations();
    if (!operations)
        return;
    const QList<FileMove> renames = m_model->preview().renames();
    m_committing = true;
    m_rename->setEnabled(false);
    m_pages->setEnabled(false);
    m_mode->setEnabled(false);
    // Links to the renamed notes would be rewritten here, with `renames`, once the link updater
    // takes renames.
    QPointer<BatchRenamePanel> self(this);
    QPointer<PaneState> pane = m_pane;
    operations->renameMany(renames, batchRenameTitle(renames.size()), m_state.undoStack(),
                           [self, pane, renames](const QList<FilePath>& done, const QHash<FilePath, QString>& failed) {
                               if (pane) {
                                   QSet<FilePath> shown;
                                   for (const FileMove& rename : renames)
                                       if (done.contains(rename.from))
                                           shown.insert(rename.to);
                                   pane->setPendingSelection(shown);
                                   pane->reload();
                               }
                               if (!self)
                                   return;
                               if (failed.isEmpty() && done.size() == renames.size())
                                   self->closeSheet();
                               else
                                   self->showOutcome(done, failed);
                           });
}

void BatchRenamePanel::showOutcome(const QList<FilePath>& done, const QHash<FilePath, QString>& failed)
{
    m_committing = false;
    m_finished = true;
    m_model->setFailures(failed);
    const qsizetype asked = m_model->preview().changing;
    m_summary->setText(QStringLiteral("Renamed %1 of %2; %3 couldn't be renamed").arg(done.size()).arg(asked).arg(asked - done.size()));
    m_rename->setEnabled(false);
    m_cancel->setText(QStringLiteral("Close"));
    m_cancel->setFocus();
}

namespace {

// Ctrl+1…Ctrl+6: the mode keys, which the window's own (the view modes) give way to while the
// panel has the keys. -1 for any other key.
int modeKey(const QKeyEvent* event)
{
    const int index = event->key() - Qt::Key_1;
    const bool ctrl = (event->modifiers() & ~Qt::KeypadModifier) == Qt::ControlModifier;
    return ctrl && index >= 0 && index < int(BatchRename::modes().size()) ? index : -1;
}

} // namespace

bool BatchRenamePanel::eventFilter(QObject* watched, QEvent* event)
{
    // The mode keys, before the part with the keyboard sees them: a drop-down would take
    // Ctrl+1's "1" as the start of an item's name.
    const bool key = event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress;
    auto* part = qobject_cast<QWidget*>(watched);
    if (key && part && (part == this || isAncestorOf(part))) {
        if (const int mode = modeKey(static_cast<QKeyEvent*>(event)); mode >= 0) {
            event->accept();
            if (event->type() == QEvent::KeyPress && !m_committing && !m_finished)
                showMode(mode);
            return true;
        }
    }
    return PanelSheet::eventFilter(watched, event);
}

void BatchRenamePanel::keyPressEvent(QKeyEvent* event)
{
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && event->modifiers() == Qt::NoModifier) {
        if (m_finished || focusWidget() == m_cancel)
            closeSheet();
        else
            commit();
        return;
    }
    PanelSheet::keyPressEvent(event);
}

} // namespace orwick
