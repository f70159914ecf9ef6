#pragma once
// The inbox pass: every file that a reception left in \new is decoded by
// the decoder of its ending and then removed. A file that the pass doesn't
// know stays, and so does a saved day whose decoder asks to keep it, so that
// the next reception of any kind finds it again.
#include <QString>
#include <functional>

namespace vex {

struct Inbox_File {
    QString name;      // file name in \new
    QString kind;      // "Vex", "NTD", "DAT"
    int result = 0;    // the decoder's result (pack files: 0 decoded, 1 refused)
    bool removed = false;
};

// Decoders of the endings other than ".Vex", by the ending in capitals
// ("NTD", "DAT"); a decoder returns false to keep its file for the next pass.
using Inbox_Decoder = std::function<bool(const QString& path)>;
void Register_Inbox_Decoder(const QString& ending, Inbox_Decoder decoder);

// Runs the pass over the application folder's \new, by file name;
// after each file, done is told what became of it. Returns the number of
// files decoded.
int Inbox_Pass(const std::function<void(const Inbox_File&)>& done = {});

} // namespace vex
