#pragma once
// ReviewFileList: the review panel's list of changed files — group headings ("Staged 2") and
// file rows with their badge (GitMarks.h) — over the rows of ReviewList.h. The cursor never rests
// on a heading: Up and Down pass over them. Replacing the rows keeps the cursor on the same file
// in the same group, or near where it was when that file moved on (ReviewList::findReviewRow).
//
// Only draws and forwards input. Signals: currentRowChanged() after each move of the cursor to
// another file or after the rows were replaced; spacePressed() on Space; actionPressed(action)
// for the panel's other keys of the file list (O, T, E, Delete: ViewKeys' Review Changes).

#include "commands/ViewKeys.h"
#include "git/ReviewList.h"

#include <QAbstractListModel>
#include <QListView>

namespace orwick {

class ReviewFileModel : public QAbstractListModel {
    Q_OBJECT
public:
    using QAbstractListModel::QAbstractListModel;
    // Shows `rows`, keeping the cursor on the same file where it can, and paints them at once
    // (when shown); then emits currentRowChanged().
    void setRows(QList<ReviewRow> rows);
    const QList<ReviewRow>& rows() const { return m_rows; }
    int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : int(m_rows.size()); }
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    QList<ReviewRow> m_rows;
};

class ReviewFileList : public QListView {
    Q_OBJECT
public:
    explicit ReviewFileList(QWidget* parent = nullptr);

    // Shows `rows`, keeping the cursor on the same file where it can, and paints them at once
    // (when shown); then emits currentRowChanged().
    void setRows(QList<ReviewRow> rows);
    const QList<ReviewRow>& rows() const { return m_model.rows(); }
    // The file row under the cursor; null when there is none.
    const ReviewRow* currentReviewRow() const;
    // Puts the cursor on the file `path` of `group`; false when it isn't listed there.
    bool selectFile(ReviewGroup group, const QString& path);

Q_SIGNALS:
    void currentRowChanged();
    void spacePressed();
    void actionPressed(orwick::ViewKeyAction action);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;

private:
    ReviewFileModel m_model;
};

} // namespace orwick
