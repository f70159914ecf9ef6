#pragma once
// A new row of a table on the open connection, written the system's way
// (AddNew, fields, Update): what a test lays down by hand.
#include <QList>
#include <QString>
#include <QVariant>
#include <utility>

namespace vex::test {

using Row_Fields = QList<std::pair<QString, QVariant>>;

void Put_Row(const QString& table, const QString& key, const Row_Fields& fields);

} // namespace vex::test
