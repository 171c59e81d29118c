// Text under construction.
#pragma once

#include "RecordFields.h"

#include <array>
#include <charconv>
#include <cstring>
#include <memory>
#include <utility>

/// Grows at its end and keeps its memory when it is cleared. Texts of the other kind are
/// converted; what Latin-1 does not have becomes '?'.
template <typename Char>
class TextBuffer final
{
public:
    TextBuffer() = default;
    TextBuffer(TextBuffer &&other) noexcept
        : m_begin(std::move(other.m_begin))
        , m_end(std::exchange(other.m_end, nullptr))
        , m_limit(std::exchange(other.m_limit, nullptr))
    {
    }

    void clear() { m_end = m_begin.get(); }
    qsizetype size() const { return m_end - m_begin.get(); }
    const Char *data() const { return m_begin.get(); }

    void append(char character)
    {
        reserve(1);
        *m_end++ = static_cast<Char>(character);
    }

    template <RecordView View>
    void append(View text)
    {
        if (text.size() <= 0)
            return;
        const auto *const chars = charsOf(text);
        reserve(text.size());
        if constexpr (std::same_as<CharOf<View>, Char>) {
            // Separators come one by one.
            if (text.size() == 1)
                *m_end = *chars;
            else
                std::memcpy(m_end, chars, static_cast<std::size_t>(text.size()) * sizeof(Char));
        } else {
            std::transform(chars, chars + text.size(), m_end, converted<CharOf<View>>);
        }
        m_end += text.size();
    }

    /// In plain decimal.
    void appendNumber(int number)
    {
        reserve(static_cast<qsizetype>(longestNumber));
        if constexpr (std::same_as<Char, char>) {
            m_end = std::to_chars(m_end, m_end + longestNumber, number).ptr;
        } else {
            std::array<char, longestNumber> digits{};
            const auto *const end = std::to_chars(digits.begin(), digits.end(), number).ptr;
            m_end = std::copy(digits.cbegin(), end, m_end);
        }
    }

private:
    template <typename Other>
    static Char converted(Other character)
    {
        if constexpr (sizeof(Other) < sizeof(Char))
            return static_cast<unsigned char>(character);
        else
            return character <= 0xff ? static_cast<Char>(character) : '?';
    }

    void reserve(qsizetype count)
    {
        if (m_end == nullptr || m_limit - m_end < count)
            grow(count);
    }

    void grow(qsizetype count)
    {
        constexpr qsizetype leastCapacity = 4096;
        const qsizetype used = size();
        const qsizetype capacity = std::max({leastCapacity, 2 * used, used + count});
        auto grown = std::make_unique_for_overwrite<Char[]>(static_cast<std::size_t>(capacity));
        std::copy(m_begin.get(), m_end, grown.get());
        m_begin = std::move(grown);
        m_end = m_begin.get() + used;
        m_limit = m_begin.get() + capacity;
    }

    std::unique_ptr<Char[]> m_begin;
    Char *m_end = nullptr;
    Char *m_limit = nullptr;
};
