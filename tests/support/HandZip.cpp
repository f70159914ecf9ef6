#include "support/HandZip.h"

#include <QFile>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <zip.h>

namespace vex::test {

void Hand_Zip(const QString& path, const std::vector<std::pair<QByteArray, QByteArray>>& entries, bool asLink)
{
    int code = 0;
    zip_t* z = zip_open(QFile::encodeName(path).constData(), ZIP_CREATE | ZIP_TRUNCATE, &code);
    ASSERT_NE(z, nullptr);
    for (const auto& [name, data] : entries) {
        void* copy = malloc(size_t(data.size()) + 1);
        memcpy(copy, data.constData(), size_t(data.size()));
        zip_source_t* src = zip_source_buffer(z, copy, zip_uint64_t(data.size()), 1);
        const zip_int64_t i = zip_file_add(z, name.constData(), src, 0);
        ASSERT_GE(i, 0);
        if (asLink)
            zip_file_set_external_attributes(z, zip_uint64_t(i), 0, ZIP_OPSYS_UNIX, (S_IFLNK | 0777) << 16);
    }
    ASSERT_EQ(zip_close(z), 0);
}

} // namespace vex::test
