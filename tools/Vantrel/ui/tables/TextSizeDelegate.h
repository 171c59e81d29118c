// Measuring the texts of a table's cells.
#pragma once

#include <QFont>
#include <QHash>
#include <QSize>
#include <QString>
#include <QStyledItemDelegate>

class QStyle;

/// Remembers the sizes of the texts that it has measured: a table asks for those of a thousand
/// rows whenever its columns are fitted to them, and most texts stand in many rows. For cells of
/// text and nothing else. GUI thread.
class TextSizeDelegate final : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    /// What the size of a text depends on beside the text. One set holds for all cells at a time.
    struct Surroundings
    {
        QFont font;
        const QStyle *style = nullptr;
        QSize room;
        QStyleOptionViewItem::ViewItemFeatures features;

        bool operator==(const Surroundings &other) const = default;
    };

    mutable Surroundings m_surroundings;
    mutable QHash<QString, QSize> m_sizes;
};
