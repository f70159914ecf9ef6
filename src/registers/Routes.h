#pragma once
// Routes: a route is the name in S_D1.D_F12 of its cars, and lives as long
// as one car carries it. The standard speed of its cars is S_D1.D_F10.
#include <QString>
#include <QStringList>

namespace vex {

class Cls_DB;

QStringList Route_Names(Cls_DB& db);
QStringList Route_Cars(Cls_DB& db, const QString& route);
// Speed of the route's first car; empty when it has none.
QString Route_Speed(Cls_DB& db, const QString& route);
// The cars not on the route: all of them, or (unassignedOnly) those on no route.
QStringList Other_Cars(Cls_DB& db, const QString& route, bool unassignedOnly);

// Saving: the cars of the list take the route and the speed, the removed
// ones an empty route. Returns the message id: 152 no route name, 151 a car
// that can't be found (the others are written), 150 done.
int Route_Save(Cls_DB& db, const QString& route, const QString& speed, const QStringList& cars,
               const QStringList& removed);
// Every car of the route gets empty text in D_F12 and D_F23.
void Route_Delete(Cls_DB& db, const QString& route);

} // namespace vex
