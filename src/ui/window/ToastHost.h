#pragma once
// Toasts: a short message bottom centre for a few seconds, with an action button (Undo) where
// there is one. A new toast replaces the one shown.

#include <QWidget>
#include <functional>

class QLabel;
class QPushButton;
class QTimer;

namespace orwick {

class ToastHost : public QWidget {
    Q_OBJECT
public:
    explicit ToastHost(QWidget* window);

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

    QLabel* m_label;
    QPushButton* m_button;
    QTimer* m_timer;
    std::function<void()> m_action;
};

} // namespace orwick
