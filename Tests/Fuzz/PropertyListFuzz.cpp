// Property lists of any bytes, XML and binary: what was read and can be written reads the same again.

#include "Platform/PropertyList.h"
#include "Tests/Fuzz/Promise.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    static_cast<void>(PropertyList::binaryFromXml(bytes));
    const auto list = PropertyList::parse(bytes);
    if (!list)
        return 0;
    for (const auto format : {PropertyList::Format::Xml, PropertyList::Format::Binary}) {
        const auto written = PropertyList::serialize(*list, format);
        const auto once = written ? PropertyList::parse(*written) : std::nullopt;
        promise(once.has_value() == written.has_value(), "what is written reads again");
        // The first writing may drop fractions of a second, the next ones nothing.
        const auto rewritten = once ? PropertyList::serialize(*once, format) : std::nullopt;
        const auto twice = rewritten ? PropertyList::parse(*rewritten) : std::nullopt;
        promise(twice.has_value() == once.has_value() && (!once || PropertyList::isSame(*once, *twice)),
                "what was written stays the same");
    }
    return 0;
}
