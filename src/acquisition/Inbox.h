#pragma once
// The inbox pass: every file that a reception left in \new is decoded by
// the decoder of its ending and then removed. A file stays when its decoder
// asks to keep it, or when the database refused any of its rows (locked,
// read-only, gone): a file leaves \new only after its rows are committed,
// so that the next reception of any kind finds it again.
#include <QString>
#include <functional>

namespace vex {

class Cls_DB;

struct Inbox_File {
    QString name;      // file name in \new
    QString kind;      // "Vex", "NTD", "DAT"
    int result = 0;    // pack files: 0 decoded, 1 refused; others: 0 decoded, 1 kept
    bool removed = false;
    QString why;       // why the file stays, or why it was refused
    bool undriven = false; // pack files: a day page left erased, nothing driven that day
};

// What a decoder of the endings other than ".Vex" made of its file: done
// (the file goes), or kept for the next pass with the reason.
struct Inbox_Verdict {
    bool keep = false;
    QString why;
};
using Inbox_Decoder = std::function<Inbox_Verdict(Cls_DB& db, const QString& path)>;
// By the ending in capitals ("NTD", "DAT").
void Register_Inbox_Decoder(const QString& ending, Inbox_Decoder decoder);

// Runs the pass over the application folder's \new, by file name, storing
// on db; after each file, done is told what became of it. A file's
// companion note ("<file>.id") goes with it. Returns the number of files
// looked at.
int Inbox_Pass(Cls_DB& db, const std::function<void(const Inbox_File&)>& done = {});

} // namespace vex
