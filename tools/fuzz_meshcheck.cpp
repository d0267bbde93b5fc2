// The look at a mesh file before it is read: any bytes, of each kind. The first byte says which.
#include <examples/SceneEditor/document/MeshCheck.h>

#include <QtCore/QString>

#include <cstdint>

// The name is libFuzzer's.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const char* const kinds[] = {"ply", "obj", "stl", "gltf", "glb"};
    if (size == 0)
        return 0;
    const QByteArray contents(reinterpret_cast<const char*>(data + 1), int(size - 1));
    sceneeditor::meshFileFault(contents, QLatin1String(kinds[data[0] % 5]));
    return 0;
}
