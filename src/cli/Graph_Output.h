#pragma once
// Where a graph of vexcli goes: a PNG image of a window's proportions, or
// an A4 landscape PDF page with a header over a graph of its own.
#include <QSize>
#include <QString>
#include <QStringList>
#include <functional>

namespace vex {
class Graph_Surface;
}

namespace vex::cli {

struct Graph_File {
    QString path;
    QSize size{1920, 1080}; // pixels of an image
    bool pdf = false;
};

// Reads "--out FILE" and "--size WxH" out of args (removing them); false
// with a reason when they are missing or wrong.
bool Take_Output(QStringList& args, Graph_File& file, QString& reason);

// Draws on the file: draw gets the surface and the Out_Direction to use (0
// for an image, 2 for a page); a page gets title and the header lines above
// the graph. False with a reason when the file can't be written.
bool Render(const Graph_File& file, const QString& title, const QStringList& header,
            const std::function<void(Graph_Surface&, int16_t)>& draw, QString& reason);

// Takes "--name VALUE" out of args; empty text when absent.
QString Take_Option(QStringList& args, const QString& name);
// Takes "--out FILE" out of args as an absolute path: the start moves into
// the application folder, and a file named from the shell stays where it was
// named. Empty when absent.
QString Take_Out_Path(QStringList& args);

// Takes "--name N" out of args: a whole number from low to high (and of
// allowed, when given); fallback when absent. False when it is none.
bool Number_Option(QStringList& args, const QString& name, int fallback, int low, int high, int& value,
                   const QList<int>& allowed = {});

} // namespace vex::cli
