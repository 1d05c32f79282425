// Day files of any bytes. The reader of the plain form and the parser of any XML must agree, what is written
// must read again, and what is cut must leave a whole file.

#include "Classes/ACTIVITY_LOGS/DayFile.h"
#include "Classes/ACTIVITY_LOGS/DayFileScan.h"
#include "Tests/Fuzz/Promise.h"

using namespace Qt::StringLiterals;

namespace
{
QString shown(const LogNodes &nodes)
{
    return DayFile::getXMLfromNodes(nodes);
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    const QString key = u"09-24-2026"_s;
    const auto nodes = DayFile::read(bytes, key);
    if (!nodes)
        return 0;

    // A comment behind the root is in no plain form, and changes no record.
    if (const bool isOneByteAUnit = bytes.endsWith('>'); isOneByteAUnit) {
        const auto again = DayFile::read(bytes + "<!---->", key);
        promise(again && shown(*again) == shown(*nodes), "both readers agree");
    }

    const auto rewritten = DayFile::read(shown(*nodes).toUtf8(), key);
    promise(rewritten && rewritten->size() <= nodes->size(), "what is written reads again");

    auto scanned = DayFileScan::run(bytes, key);
    for (const auto &record : scanned.records)
        promise(record.begin < record.end && record.end <= bytes.size(), "a record lies within the file");
    std::erase_if(scanned.records, [](const auto &record) { return record.begin % 2; });
    const QByteArray left = DayFileScan::without(scanned.records, bytes);
    promise(DayFileScan::run(left, key).isWhole, "what is left is well-formed");
    return 0;
}
