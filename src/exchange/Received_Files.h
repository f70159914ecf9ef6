#pragma once
// The files of "\exp" that remote transfers brought and the loading step
// hasn't dealt with yet. "\exp" also holds the site's own backups and
// exports, which look like any package; only the names of this list are
// ever loaded or deleted by the loading step. The list is the hidden file
// "\exp\.received", a name a line (remote names never hold a line end).
#include <QString>
#include <QStringList>

namespace vex {

// The names of the list whose files still lie in expDir, in the list's order.
QStringList Received_Names(const QString& expDir);
// Adds name (once); false when the list can't be written.
bool Received_Add(const QString& expDir, const QString& name);
void Received_Drop(const QString& expDir, const QString& name);

} // namespace vex
