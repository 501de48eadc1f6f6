// Toasts: a short message sits on one line, as wide as its text; a long one wraps within the
// widest toast the window has room for.

#include "ui/window/ToastHost.h"

#include <QApplication>
#include <QLabel>
#include <gtest/gtest.h>

using namespace orwick;

namespace {

QLabel* messageLabel(ToastHost& toasts) { return toasts.findChild<QLabel*>(); }

TEST(ToastHostTest, AShortMessageStaysOnOneLine)
{
    QWidget window;
    window.resize(1400, 900);
    window.show();
    ToastHost toasts(&window);
    const QStringList messages = {
        QStringLiteral("Saved workspace “Work”"), QStringLiteral("Saved to the sidebar"),
        QStringLiteral("Moved file3.txt to the Trash"), QStringLiteral("Nothing to stash"),
        QStringLiteral("Made the branch feature/x"), QStringLiteral("Renamed 5 items"),
        QStringLiteral("Set status on gamma.md"), QStringLiteral("Copied"),
    };
    for (const QString& message : messages) {
        for (const bool withUndo : {false, true}) {
            toasts.show(message, withUndo ? QStringLiteral("Undo") : QString(), withUndo ? [] {} : std::function<void()>());
            QApplication::processEvents();
            QLabel* label = messageLabel(toasts);
            ASSERT_NE(label, nullptr);
            const int oneLine = label->fontMetrics().lineSpacing();
            EXPECT_LT(label->height(), 2 * oneLine) << message.toStdString() << (withUndo ? " with Undo" : "");
            EXPECT_LT(label->heightForWidth(label->width()), 2 * oneLine) << message.toStdString();
            // As wide as its text, not the widest toast.
            EXPECT_LT(toasts.width(), window.width() / 2) << message.toStdString();
        }
    }
}

TEST(ToastHostTest, ALongMessageWrapsInsideTheWindow)
{
    QWidget window;
    window.resize(600, 500);
    window.show();
    ToastHost toasts(&window);
    toasts.show(QStringLiteral("Couldn’t copy 6 items: “f0.txt”, “f1.txt”, “f2.txt” and 3 more — "
                               "the folder takes no new entries, so nothing was copied there"),
                QStringLiteral("Show All"), [] {});
    QApplication::processEvents();
    QLabel* label = messageLabel(toasts);
    EXPECT_GE(label->height(), 2 * label->fontMetrics().lineSpacing());
    EXPECT_GE(toasts.x(), 0);
    EXPECT_LE(toasts.geometry().right(), window.width());
}

} // namespace

TEST(ToastHostTest, AFileNamedLikeMarkupIsShownAsWritten)
{
    QWidget window;
    window.resize(1400, 900);
    window.show();
    ToastHost toasts(&window);
    const QString message = QStringLiteral("Moved <i>x</i>.txt to the Trash");
    toasts.show(message);
    QApplication::processEvents();
    EXPECT_EQ(messageLabel(toasts)->textFormat(), Qt::PlainText);
    EXPECT_GT(messageLabel(toasts)->sizeHint().width(), messageLabel(toasts)->fontMetrics().horizontalAdvance(QStringLiteral("Moved x.txt to the Trash")))
        << "the tags are shown, not taken as italics";
}
