// Keyed archives of any bytes: whatever their references are, decoding comes to an end.

#include "Platform/KeyedArchive.h"
#include "Tests/Fuzz/Promise.h"

namespace
{
constexpr int Levels = 3;

void walk(const KeyedArchive &archive, const ArchiveObject &object, int levels)
{
    static_cast<void>(object.toVariant());
    static_cast<void>(object.text());
    static_cast<void>(object.date());
    static_cast<void>(object.data());
    static_cast<void>(object.classChain());
    const QByteArray className = object.className().toLatin1();
    const bool isNamed = !className.isEmpty() && object.className() == QString::fromLatin1(className);
    promise(!isNamed || object.isKindOf(QLatin1StringView(className)) || archive.isExhausted(),
            "an object is of its class");
    for (const char *name : {"name", "items", "date", "count", "NS.objects", "NS.string"}) {
        const QLatin1StringView key(name);
        static_cast<void>(object.decodeInt(key));
        static_cast<void>(object.decodeBool(key));
        static_cast<void>(object.decodeString(key));
        static_cast<void>(object.decodeDate(key));
        static_cast<void>(object.decodeList(key));
        promise(object.contains(key) || object.decodeObject(key).isNull(), "what is missing is null");
        if (levels > 0)
            walk(archive, object.decodeObject(key), levels - 1);
    }
    const auto entries = object.entries();
    if (entries && levels > 0 && !entries->empty()) {
        walk(archive, entries->front(), levels - 1);
        walk(archive, entries->back(), levels - 1);
    }
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    const auto archive = KeyedArchive::open(QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)));
    if (archive)
        walk(*archive, archive->decodeObject(QLatin1StringView("root")), Levels);
    return 0;
}
