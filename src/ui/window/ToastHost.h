#pragma once
// Toasts: a short message bottom centre for a few seconds, with action buttons (Undo, Show All)
// where there are some. A new toast replaces the one shown. A long message wraps rather than
// running past the window's edges.

#include <QWidget>
#include <functional>

class QLabel;
class QPushButton;
class QTimer;

namespace orwick {

struct ToastAction {
    QString title; // "Undo"
    std::function<void()> run;
};

class ToastHost : public QWidget {
    Q_OBJECT
public:
    explicit ToastHost(QWidget* window);

    // Shows `message`; each action is a button, in order, that closes the toast and runs it.
    void show(const QString& message, const QList<ToastAction>& actions);
    // Shows `message`; with an action, a button titled `actionTitle` runs it and closes the toast.
    void show(const QString& message, const QString& actionTitle = {}, std::function<void()> action = {});
    QString currentMessage() const;
    // Takes the toast away now (its action is no longer right, say).
    void dismiss();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void place();

    static constexpr int kMostActions = 2;
    QLabel* m_label;
    QPushButton* m_buttons[kMostActions];
    QTimer* m_timer;
    QList<ToastAction> m_actions;
};

} // namespace orwick
