#pragma once
// A zip written by hand, entry by entry, so that it can hold what the
// program would never write: any names, any bytes, links.
#include <QByteArray>
#include <QString>
#include <utility>
#include <vector>

namespace vex::test {

void Hand_Zip(const QString& path, const std::vector<std::pair<QByteArray, QByteArray>>& entries, bool asLink = false);

} // namespace vex::test
