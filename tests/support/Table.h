// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTest>

/// What stands in a cell of a table: a QString may be given as a plain u"literal".
template <typename Type>
struct RowCell
{
    using Given = Type;
};

template <>
struct RowCell<QString>
{
    struct Given : QString
    {
        Given(const QString &text) // NOLINT: a text is a text
            : QString(text)
        {
        }
        template <std::size_t Size>
        Given(const char16_t (&text)[Size]) // NOLINT: the array keeps zeros inside
            : QString(reinterpret_cast<const QChar *>(text), Size - 1)
        {
        }
    };
};

/// The table of a test: its columns, then one call a row with the row's name and values.
template <typename... Types>
class Table
{
public:
    template <typename... Names>
    explicit Table(Names... names)
    {
        (QTest::addColumn<Types>(names), ...);
    }

    void operator()(const char *name, const typename RowCell<Types>::Given &...values) const
    {
        QTestData &row = QTest::newRow(name);
        ((row << static_cast<const Types &>(values)), ...);
    }
};
