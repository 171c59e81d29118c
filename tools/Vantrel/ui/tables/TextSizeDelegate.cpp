// Measuring the texts of a table's cells.
#include "TextSizeDelegate.h"

#include <QWidget>

QSize TextSizeDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    // Names may be many, and only those on top of the table are measured again.
    constexpr qsizetype mostSizes = 10'000;

    const QVariant ownFont = index.data(Qt::FontRole);
    const Surroundings surroundings{
        .font = ownFont.isValid() ? qvariant_cast<QFont>(ownFont) : option.font,
        .style = option.widget != nullptr ? option.widget->style() : nullptr,
        .room = option.rect.size(),
        .features = option.features,
    };
    if (surroundings != m_surroundings || m_sizes.size() >= mostSizes) {
        m_sizes.clear();
        m_surroundings = surroundings;
    }

    const QString text = index.data().toString();
    const auto known = m_sizes.constFind(text);
    if (known != m_sizes.constEnd())
        return *known;
    return *m_sizes.insert(text, QStyledItemDelegate::sizeHint(option, index));
}
