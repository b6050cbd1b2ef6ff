#include "geometry/servoce/step.h"

#include <QDebug>
#include <QFile>
#include <IFSelect_ReturnStatus.hxx>
#include <Interface_Static.hxx>
#include <Message.hxx>
#include <Message_Messenger.hxx>
#include <Message_PrinterOStream.hxx>
#include <STEPControl_Controller.hxx>
#include <STEPControl_Reader.hxx>
#include <STEPControl_Writer.hxx>
#include <StepData_Protocol.hxx>
#include <StepData_StepModel.hxx>
#include <StepData_StepWriter.hxx>
#include <XSControl_WorkSession.hxx>
#include <STEPCAFControl_Writer.hxx>
#include <Quantity_Color.hxx>
#include <TDocStd_Document.hxx>
#include <XCAFApp_Application.hxx>
#include <XCAFDoc_ColorTool.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <functional>
#include <sstream>
#include <mutex>

#include "base/SafeWrite.h"
#include "geometry/servoce/guard.h"
#include "geometry/servoce/kernel.h"

namespace servoce {

using detail::guarded;

void initialize()
{
    static std::once_flag once;
    std::call_once(once, [] {
        Message::DefaultMessenger()->RemovePrinters(STANDARD_TYPE(Message_PrinterOStream));
        STEPControl_Controller::Init();
        Interface_Static::SetCVal("write.step.schema", "AP214IS");
        Interface_Static::SetCVal("write.step.unit", "MM");
        Interface_Static::SetCVal("xstep.cascade.unit", "MM");
    });
}

namespace detail {

namespace {

// The STEP transfers keep global state (their static parameters and session): two at
// once, a build's unification beside an export, corrupt each other.
std::mutex transferMutex;

void transfer(STEPControl_Writer &writer, const TopoDS_Shape &shape)
{
    if (writer.Transfer(shape, STEPControl_AsIs) != IFSelect_RetDone)
        throw Standard_Failure("the shape cannot be written as STEP");
}

TopoDS_Shape shapeRead(STEPControl_Reader &reader)
{
    reader.TransferRoots();
    return reader.Shape();
}

} // namespace

TopoDS_Shape read_step_file(const std::string &path)
{
    const std::lock_guard<std::mutex> lock(transferMutex);
    initialize();
    STEPControl_Reader reader;
    if (reader.ReadFile(path.c_str()) != IFSelect_RetDone)
        throw Standard_Failure(("cannot read the STEP file " + path).c_str());
    return shapeRead(reader);
}

TopoDS_Shape through_step_text(const TopoDS_Shape &shape)
{
    const std::lock_guard<std::mutex> lock(transferMutex);
    initialize();
    STEPControl_Writer writer;
    transfer(writer, shape);
    const Handle(StepData_StepModel) model = writer.Model();
    StepData_StepWriter text(model);
    text.SendModel(Handle(StepData_Protocol)::DownCast(writer.WS()->Protocol()));
    std::stringstream stream;
    if (!text.Print(stream))
        throw Standard_Failure("the shape cannot be put in STEP text");
    STEPControl_Reader reader;
    if (reader.ReadStream("round trip", stream) != IFSelect_RetDone)
        throw Standard_Failure("the STEP text of the shape cannot be read");
    return shapeRead(reader);
}

void write_step_file(const TopoDS_Shape &shape, const std::string &path)
{
    if (shape.IsNull())
        throw Standard_Failure("the shape is null");
    const std::lock_guard<std::mutex> lock(transferMutex);
    initialize();
    STEPControl_Writer writer;
    transfer(writer, shape);
    if (writer.Write(path.c_str()) != IFSelect_RetDone)
        throw Standard_Failure(("cannot write the STEP file " + path).c_str());
}

void write_coloured_step_file(const std::vector<coloured_shape> &bodies, const std::string &path)
{
    const std::lock_guard<std::mutex> lock(transferMutex);
    initialize();
    Handle(TDocStd_Document) document;
    XCAFApp_Application::GetApplication()->NewDocument("MDTV-XCAF", document);
    const Handle(XCAFDoc_ShapeTool) shapes = XCAFDoc_DocumentTool::ShapeTool(document->Main());
    const Handle(XCAFDoc_ColorTool) colours = XCAFDoc_DocumentTool::ColorTool(document->Main());
    int added = 0;
    for (const coloured_shape &body : bodies) {
        if (body.body.is_null()) {
            qCritical() << "shape is null";
            continue;
        }
        const TDF_Label label = shapes->NewShape();
        shapes->SetShape(label, body.body.Shape());
        colours->SetColor(label, Quantity_Color(body.red, body.green, body.blue, Quantity_TOC_RGB), XCAFDoc_ColorGen);
        ++added;
    }
    // The writer refuses a document without shapes: an empty scene is an empty compound.
    if (added == 0)
        shapes->SetShape(shapes->NewShape(), make_compound({}).Shape());
    STEPCAFControl_Writer writer;
    const bool written = writer.Perform(document, path.c_str());
    XCAFApp_Application::GetApplication()->Close(document);
    if (!written)
        throw Standard_Failure(("cannot write the STEP file " + path).c_str());
}

} // namespace detail

shape read_step(const std::string &path)
{
    return guarded("read_step", shape(), [&] { return shape(detail::read_step_file(path)); });
}

namespace {

// The file is written beside its target and moved over it only when complete.
bool write_replacing(const std::string &path, const std::function<void(const std::string &)> &write)
{
    const QString target = QFile::decodeName(path.c_str());
    if (!SafeWrite::mayWrite(target))
        return false;
    SafeWrite::Replacement replacement(target);
    const bool written = guarded("write_step", false, [&] {
        write(QFile::encodeName(replacement.temporaryPath()).toStdString());
        return true;
    });
    return written && replacement.commit();
}

} // namespace

bool write_step(const shape &model, const std::string &path)
{
    return write_replacing(path,
                           [&](const std::string &temporary) { detail::write_step_file(model.Shape(), temporary); });
}

bool write_step(const std::vector<coloured_shape> &bodies, const std::string &path)
{
    return write_replacing(path,
                           [&](const std::string &temporary) { detail::write_coloured_step_file(bodies, temporary); });
}

} // namespace servoce
