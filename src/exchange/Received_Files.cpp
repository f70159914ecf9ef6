#include "exchange/Received_Files.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace vex {

namespace {

QString List_Path(const QString& expDir)
{
    return QDir(expDir).filePath(QStringLiteral(".received"));
}

QStringList Read_List(const QString& expDir)
{
    QFile f(List_Path(expDir));
    if (!f.open(QIODevice::ReadOnly))
        return {};
    QStringList names;
    for (const QByteArray& line : f.readAll().split('\n'))
        if (!line.isEmpty())
            names << QString::fromUtf8(line);
    names.removeDuplicates();
    return names;
}

bool Write_List(const QString& expDir, const QStringList& names)
{
    if (names.isEmpty()) {
        QFile::remove(List_Path(expDir));
        return !QFileInfo::exists(List_Path(expDir));
    }
    QSaveFile f(List_Path(expDir));
    if (!f.open(QIODevice::WriteOnly))
        return false;
    for (const QString& n : names)
        f.write(n.toUtf8() + '\n');
    return f.commit();
}

} // namespace

QStringList Received_Names(const QString& expDir)
{
    QStringList present;
    for (const QString& n : Read_List(expDir))
        if (QFileInfo(QDir(expDir).filePath(n)).isFile())
            present << n;
    return present;
}

bool Received_Add(const QString& expDir, const QString& name)
{
    QStringList names = Read_List(expDir);
    if (names.contains(name))
        return true;
    return Write_List(expDir, names << name);
}

void Received_Drop(const QString& expDir, const QString& name)
{
    QStringList names = Read_List(expDir);
    if (names.removeAll(name) > 0)
        Write_List(expDir, names);
}

} // namespace vex
