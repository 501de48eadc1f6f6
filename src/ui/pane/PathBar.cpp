#include "ui/pane/PathBar.h"

#include "platform/XdgPaths.h"
#include "ui/text/LiteralText.h"
#include "ui/theme/Theme.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>

namespace orwick {

PathBar::PathBar(PaneState* pane, QWidget* parent) : QWidget(parent), m_pane(pane)
{
    m_layout = new QHBoxLayout(this);
    m_layout->setContentsMargins(8, 4, 8, 4);
    m_layout->setSpacing(0);
    setFocusPolicy(Qt::NoFocus);
    connect(pane, &PaneState::locationChanged, this, &PathBar::rebuild);
    rebuild();
}

void PathBar::rebuild()
{
    while (QLayoutItem* child = m_layout->takeAt(0)) {
        delete child->widget();
        delete child;
    }
    auto addCrumb = [this](const QString& text, const FilePath& target, bool current) {
        auto* button = new QToolButton(this);
        button->setText(literalText(text));
        button->setAutoRaise(true);
        button->setFocusPolicy(Qt::NoFocus);
        button->setToolTip(target.text());
        if (current) {
            QFont font = button->font();
            font.setBold(true);
            button->setFont(font);
        }
        connect(button, &QToolButton::clicked, this, [this, target] { m_pane->navigate(target); });
        m_layout->addWidget(button);
    };
    auto addSeparator = [this] {
        auto* separator = new QLabel(QStringLiteral("›"), this);
        separator->setForegroundRole(QPalette::PlaceholderText); // dim, and follows the theme
        m_layout->addWidget(separator);
    };

    if (m_pane->listing()) {
        auto* title = new QLabel(m_pane->listing()->title(), this);
        QFont font = title->font();
        font.setBold(true);
        title->setFont(font);
        m_layout->addWidget(title);
        if (const auto& note = m_pane->listingNote()) {
            auto* summary = new QLabel(*note, this);
            summary->setContentsMargins(10, 0, 0, 0);
            summary->setForegroundRole(QPalette::PlaceholderText); // dim, and follows the theme
            m_layout->addWidget(summary);
        }
        m_layout->addStretch(1);
        return;
    }
    // From home ("~") when the folder is inside it, else from the root.
    const FilePath home = xdg::home();
    QList<FilePath> chain;
    for (FilePath p = m_pane->url();; p = p.parent()) {
        chain.prepend(p);
        if (p.isRoot() || p == home)
            break;
    }
    for (int i = 0; i < chain.size(); ++i) {
        const FilePath& p = chain[i];
        const QString text = p == home ? QStringLiteral("~") : p.isRoot() ? QStringLiteral("/") : visibleName(p.fileNameBytes());
        if (i > 0)
            addSeparator();
        addCrumb(text, p, i == chain.size() - 1);
    }
    m_layout->addStretch(1);
}

} // namespace orwick
