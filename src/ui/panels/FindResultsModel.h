#pragma once
// FindResultsModel: the find-in-files results as rows of a list — a heading row per file (its
// path and match count), then one row per matching line. Rows are appended as batches arrive
// (a file that grows somewhere above the end resets the model instead). Match rows carry the
// flat match index (kMatchIndexRole) the panel's highlight moves through; heading rows carry -1.
// MatchLineDelegate draws both kinds, marking the matched text in each line, and rings the
// highlighted row while the results have the keyboard.

#include "disktools/ContentSearchResults.h"

#include <QAbstractListModel>
#include <QStyledItemDelegate>

namespace orwick {

class FindResultsModel : public QAbstractListModel {
    Q_OBJECT
public:
    static constexpr int kMatchIndexRole = Qt::UserRole + 1;
    static constexpr int kLineRole = Qt::UserRole + 2; // "12", for match rows
    static constexpr int kIsHeadingRole = Qt::UserRole + 3;

    explicit FindResultsModel(QObject* parent = nullptr) : QAbstractListModel(parent) {}

    // Follows `results` after it changed (or was cleared).
    void update(const ContentSearch::Results& results);
    // The row showing flat match `index`; -1 when there is none.
    int rowOfMatch(qint64 index) const;

    int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : int(m_rows.size()); }
    QVariant data(const QModelIndex& index, int role) const override;

private:
    struct Row {
        int file;
        int match; // -1: the file's heading
    };
    const ContentSearch::Results* m_results = nullptr;
    std::vector<Row> m_rows;
    std::vector<int> m_headingRows; // by file
};

class MatchLineDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    // What to mark in each line.
    void setQuery(const QString& query, const ContentSearch::Options& options);

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    QString m_query;
    ContentSearch::Options m_options;
};

} // namespace orwick
