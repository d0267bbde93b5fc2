#pragma once

#include <memory>

class QDir;
class QRenderWidget;
class QSettings;
class QString;
class QUndoStack;
class QWidget;
struct Material;
namespace orvek::base
{
class BaseMouseHandler;
}
namespace orvek::crossplatform
{
class DisplaySurfaceManagerInterface;
}

namespace orvek::host
{
class Inspector;
class ObjectFile;
class ObjectType;
} // namespace orvek::host

// Each creates the widget that a page of the documentation describes, with the code that the page quotes. The caller
// owns it.
QWidget* sliderEdit();
QWidget* intSliderEdit();
QWidget* vectorEdit();
QWidget* colourEdit();
QWidget* labelEdit();
QWidget* fileEdit();
QWidget* tipsOnAllParts();
QWidget* section();
QWidget* panel();
QWidget* renderWidget();
QWidget* renderWidgetWithoutEngine();
QWidget* viewWithoutNativeAncestors();
QWidget* shading();
QWidget* baseColour();
QWidget* materialPanel();
QWidget* lightInspector(QUndoStack& undoStack);

bool translate(const QString& folder);
bool translateHost(const QString& folder);
void guardView(QRenderWidget* view, orvek::base::BaseMouseHandler* handler,
               orvek::crossplatform::DisplaySurfaceManagerInterface* manager);
int showMaterial();
void styleMatches(QWidget* panel);
void keepBorderedLook(QWidget* section);
void closeAfterLoading(QWidget* form);
void saveSections(QWidget* panel, QSettings& settings);
void restoreSections(QWidget* panel, QSettings& settings);
void inspectObject(orvek::host::Inspector* inspector, QWidget* window, QWidget* form);
void followWithUndo(QWidget* panel, QUndoStack* stack);
bool load(const QString& fileName, Material& material);
void keepNamesRelative(orvek::host::ObjectFile& file, const QDir& folder);
bool everythingIsSaved();
std::shared_ptr<const orvek::host::ObjectType> materialType();
std::shared_ptr<const orvek::host::ObjectType> fogType();
std::shared_ptr<const orvek::host::ObjectType> componentType();
