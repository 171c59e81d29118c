// Arithmetic on image coordinates: signed 32 bit, wrapping around instead of overflowing,
// and integer divisions that truncate toward zero.
#pragma once

#include <QPoint>
#include <QRect>

namespace Wrap {

constexpr int add(int a, int b)
{
    return static_cast<int>(static_cast<unsigned>(a) + static_cast<unsigned>(b));
}

constexpr int subtract(int a, int b)
{
    return static_cast<int>(static_cast<unsigned>(a) - static_cast<unsigned>(b));
}

constexpr int multiply(int a, int b)
{
    return static_cast<int>(static_cast<unsigned>(a) * static_cast<unsigned>(b));
}

/// How many coordinates lie between two inclusive ends.
constexpr int extent(int first, int last)
{
    return add(subtract(last, first), 1);
}

/// The middle of two inclusive ends: first + extent / 2.
constexpr int middle(int first, int last)
{
    return add(first, extent(first, last) / 2);
}

/// The centre of a rectangle with inclusive corners.
constexpr QPoint centre(const QRect &rect)
{
    return {middle(rect.left(), rect.right()), middle(rect.top(), rect.bottom())};
}

constexpr QPoint subtract(QPoint a, QPoint b)
{
    return {subtract(a.x(), b.x()), subtract(a.y(), b.y())};
}

/// Grid points of a rectangle with inclusive corners. The sides wrap, their product does not.
constexpr qint64 area(const QRect &rect)
{
    return qint64{extent(rect.left(), rect.right())} * extent(rect.top(), rect.bottom());
}

} // namespace Wrap
