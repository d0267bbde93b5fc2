#include <Orvek/Host/EditorActs.h>

namespace orvek::host
{
EditorActs* EditorActs::instance()
{
    static EditorActs acts;
    return &acts;
}
} // namespace orvek::host
