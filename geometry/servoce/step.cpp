#include "geometry/servoce/step.h"

#include <IFSelect_ReturnStatus.hxx>
#include <Interface_Static.hxx>
#include <Message.hxx>
#include <Message_Messenger.hxx>
#include <Message_PrinterOStream.hxx>
#include <STEPControl_Controller.hxx>
#include <STEPControl_Reader.hxx>
#include <STEPControl_Writer.hxx>
#include <mutex>

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

TopoDS_Shape read_step_file(const std::string &path)
{
    initialize();
    STEPControl_Reader reader;
    if (reader.ReadFile(path.c_str()) != IFSelect_RetDone)
        throw Standard_Failure(("cannot read the STEP file " + path).c_str());
    reader.TransferRoots();
    return reader.Shape();
}

void write_step_file(const TopoDS_Shape &shape, const std::string &path)
{
    if (shape.IsNull())
        throw Standard_Failure("the shape is null");
    initialize();
    STEPControl_Writer writer;
    if (writer.Transfer(shape, STEPControl_AsIs) != IFSelect_RetDone)
        throw Standard_Failure("the shape cannot be written as STEP");
    if (writer.Write(path.c_str()) != IFSelect_RetDone)
        throw Standard_Failure(("cannot write the STEP file " + path).c_str());
}

} // namespace detail

shape read_step(const std::string &path)
{
    return guarded("read_step", shape(), [&] { return shape(detail::read_step_file(path)); });
}

bool write_step(const shape &model, const std::string &path)
{
    return guarded("write_step", false, [&] {
        detail::write_step_file(model.Shape(), path);
        return true;
    });
}

} // namespace servoce
