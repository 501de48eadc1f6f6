#include "ui/images/ResizeDialog.h"

#include "fileops/OperationTexts.h"
#include "images/ImageActions.h"
#include "images/ImageRead.h"
#include "state/WindowState.h"

#include <QFocusEvent>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QVBoxLayout>

namespace orwick {

namespace {

constexpr int kLargestSide = 65'535;

// The choices of the last resize, offered again.
struct Remembered {
    ImageResize::Kind kind = ImageResize::Kind::longest;
    int longest = 1600;
    int percent = 50;
    int quality = 85;
    bool replace = false;
};
Remembered& remembered()
{
    static Remembered choices;
    return choices;
}

bool isLossy(const FilePath& picture)
{
    const QString suffix = picture.extension();
    return suffix == QLatin1StringView("jpg") || suffix == QLatin1StringView("jpeg") || suffix == QLatin1StringView("webp")
        || suffix == QLatin1StringView("avif");
}

QSpinBox* sizeField(int minimum, int maximum, int value, const QString& suffix, QWidget* parent)
{
    auto* field = new QSpinBox(parent);
    field->setRange(minimum, maximum);
    field->setValue(value);
    field->setSuffix(suffix);
    field->setAccelerated(true);
    return field;
}

} // namespace

ResizeDialog::ResizeDialog(WindowState* state, const QList<FilePath>& pictures, QWidget* window)
    : QDialog(window), m_state(state), m_pictures(pictures)
{
    setWindowTitle(QStringLiteral("Resize"));
    setAttribute(Qt::WA_DeleteOnClose);
    const Remembered& last = remembered();
    // The first picture's size (read from its header), upright as it is shown and resized,
    // starts the exact size.
    const QSize first = [&] {
        if (pictures.isEmpty())
            return QSize();
        const auto header = readPictureHeader(pictures.first());
        return header ? header->size : QSize();
    }();

    auto* layout = new QVBoxLayout(this);
    const QString what = pictures.size() == 1 ? quoted(pictures.first().fileName()) : QStringLiteral("%1 pictures").arg(pictures.size());
    auto* heading = new QLabel(QStringLiteral("Resize %1 to:").arg(what), this);
    heading->setWordWrap(true);
    layout->addWidget(heading);

    auto* grid = new QGridLayout;
    m_longestChoice = new QRadioButton(QStringLiteral("&Longest side"), this);
    // Nothing is scaled up: a remembered side larger than the picture offers half of it instead.
    const int firstLongest = first.isValid() ? std::max(first.width(), first.height()) : 0;
    const int longest = firstLongest > 1 && last.longest >= firstLongest ? firstLongest / 2 : last.longest;
    m_longest = sizeField(1, kLargestSide, longest, QStringLiteral(" px"), this);
    m_percentChoice = new QRadioButton(QStringLiteral("&Percentage"), this);
    m_percent = sizeField(1, 1000, last.percent, QStringLiteral(" %"), this);
    m_exactChoice = new QRadioButton(QStringLiteral("E&xact size"), this);
    m_width = sizeField(1, kLargestSide, first.isValid() ? first.width() : 1600, QStringLiteral(" px"), this);
    m_height = sizeField(1, kLargestSide, first.isValid() ? first.height() : 1200, QStringLiteral(" px"), this);
    m_width->setToolTip(QStringLiteral("Width"));
    m_height->setToolTip(QStringLiteral("Height"));
    auto* exactRow = new QHBoxLayout;
    exactRow->addWidget(m_width, 1);
    exactRow->addWidget(new QLabel(QStringLiteral("×"), this));
    exactRow->addWidget(m_height, 1);
    grid->addWidget(m_longestChoice, 0, 0);
    grid->addWidget(m_longest, 0, 1);
    grid->addWidget(m_percentChoice, 1, 0);
    grid->addWidget(m_percent, 1, 1);
    grid->addWidget(m_exactChoice, 2, 0);
    grid->addLayout(exactRow, 2, 1);
    grid->setColumnStretch(1, 1);
    layout->addLayout(grid);

    // Typing in a size's field, or clicking into it, chooses that way of sizing; passing through
    // it with Tab (on the way to Replace originals, say) doesn't.
    const std::pair<QRadioButton*, QList<QSpinBox*>> rows[] = {
        {m_longestChoice, {m_longest}}, {m_percentChoice, {m_percent}}, {m_exactChoice, {m_width, m_height}}};
    for (const auto& [choice, fields] : rows)
        for (QSpinBox* field : fields) {
            connect(field, &QSpinBox::valueChanged, choice, [choice] { choice->setChecked(true); });
            field->installEventFilter(this);
            field->setProperty("orwickChoice", QVariant::fromValue(static_cast<QObject*>(choice)));
        }
    switch (last.kind) {
    case ImageResize::Kind::percent: m_percentChoice->setChecked(true); break;
    case ImageResize::Kind::exact: m_exactChoice->setChecked(true); break;
    default: m_longestChoice->setChecked(true); break;
    }

    auto* qualityRow = new QHBoxLayout;
    auto* qualityLabel = new QLabel(QStringLiteral("&Quality (JPEG, WebP, AVIF):"), this);
    m_quality = sizeField(1, 100, last.quality, QString(), this);
    qualityLabel->setBuddy(m_quality);
    qualityRow->addWidget(qualityLabel);
    qualityRow->addWidget(m_quality);
    qualityRow->addStretch(1);
    layout->addLayout(qualityRow);
    const bool lossy = std::ranges::any_of(pictures, isLossy);
    qualityLabel->setVisible(lossy);
    m_quality->setVisible(lossy);

    m_replace = new QCheckBox(QStringLiteral("&Replace originals"), this);
    m_replace->setChecked(last.replace);
    m_replace->setToolTip(QStringLiteral("Otherwise the resized pictures are new files beside them. Either way, you can undo it."));
    layout->addWidget(m_replace);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    QPushButton* resize = buttons->addButton(QStringLiteral("Resize"), QDialogButtonBox::AcceptRole);
    resize->setDefault(true);
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(buttons, &QDialogButtonBox::accepted, this, &ResizeDialog::run);
    setMinimumWidth(400);
}

void ResizeDialog::run()
{
    // A field still being typed in holds its text until it is read.
    for (QSpinBox* field : {m_longest, m_percent, m_width, m_height, m_quality})
        field->interpretText();
    ConvertOptions options;
    Remembered& last = remembered();
    if (m_percentChoice->isChecked()) {
        options.resize.kind = ImageResize::Kind::percent;
        options.resize.percent = m_percent->value();
    } else if (m_exactChoice->isChecked()) {
        options.resize.kind = ImageResize::Kind::exact;
        options.resize.exact = QSize(m_width->value(), m_height->value());
    } else {
        options.resize.kind = ImageResize::Kind::longest;
        options.resize.longest = m_longest->value();
    }
    if (!m_quality->isHidden())
        options.quality = m_quality->value();
    last = {options.resize.kind, m_longest->value(), m_percent->value(), m_quality->value(), m_replace->isChecked()};
    const auto placement = m_replace->isChecked() ? imageActions::Placement::replace : imageActions::Placement::beside;
    accept();
    imageActions::resize(*m_state, m_pictures, options, placement);
}

bool ResizeDialog::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::FocusIn && static_cast<QFocusEvent*>(event)->reason() != Qt::TabFocusReason
        && static_cast<QFocusEvent*>(event)->reason() != Qt::BacktabFocusReason)
        if (auto* choice = qobject_cast<QRadioButton*>(watched->property("orwickChoice").value<QObject*>()))
            choice->setChecked(true);
    return QDialog::eventFilter(watched, event);
}

void ResizeDialog::follow(WindowState* state, QWidget* window)
{
    QObject::connect(state, &WindowState::imageResizeRequested, window, [state, window](const QList<FilePath>& pictures) {
        auto* dialog = new ResizeDialog(state, pictures, window);
        // The keyboard goes back to the window, also where no window manager hands it back.
        QObject::connect(dialog, &QDialog::finished, window, [window] { window->activateWindow(); });
        dialog->open();
        QSpinBox* start = dialog->percentChoice()->isChecked() ? dialog->percentField()
                        : dialog->exactChoice()->isChecked()   ? dialog->widthField()
                                                                : dialog->longestField();
        start->setFocus();
        start->selectAll();
    });
}

} // namespace orwick
