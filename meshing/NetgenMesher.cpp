#include "meshing/NetgenMesher.h"

#include <QTemporaryDir>
#include <fstream>
#include <mutex>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "geometry/servoce/boolops.h"
#include "geometry/servoce/brep.h"

// The library is built with its Open CASCADE interface, which the header shows
// only on request; it declares its interface bare, the library defines it in this namespace.
#define OCCGEOMETRY
namespace nglib {
#include <nglib.h>
}

// The packaged interface header includes core headers that are not installed;
// the function itself is exported with C linkage.
extern "C" void Ng_GetStatus(char **str, double &percent);

// The level up to which netgen prints its steps, a global of its mesh library
// whose header is not installed either.
namespace netgen {
extern int printmessage_importance;
}

namespace {

std::mutex runMutex;

[[noreturn]] void fail(const std::string &text)
{
    throw std::runtime_error(text);
}

void check(nglib::Ng_Result result, const char *step)
{
    if (result != nglib::NG_OK)
        fail(std::string("netgen failed to ") + step + " (code " + std::to_string(int(result)) + ")");
}

// Frees what netgen made for one run.
class NetgenRun
{
public:
    explicit NetgenRun(nglib::Ng_OCC_Geometry *geometry)
        : m_geometry(geometry)
        , m_mesh(nglib::Ng_NewMesh())
    {
    }
    ~NetgenRun()
    {
        nglib::Ng_DeleteMesh(m_mesh);
        nglib::Ng_OCC_DeleteGeometry(m_geometry);
    }
    NetgenRun(const NetgenRun &) = delete;
    NetgenRun &operator=(const NetgenRun &) = delete;

    nglib::Ng_OCC_Geometry *geometry() const { return m_geometry; }
    nglib::Ng_Mesh *mesh() const { return m_mesh; }

private:
    nglib::Ng_OCC_Geometry *m_geometry;
    nglib::Ng_Mesh *m_mesh;
};

std::string nextLine(std::istream &in)
{
    std::string line;
    if (!std::getline(in, line))
        fail("the mesh file ends early");
    return line;
}

int readCount(std::istream &in)
{
    std::istringstream line(nextLine(in));
    int count = -1;
    if (!(line >> count) || count < 0)
        fail("the mesh file has no count where one is due");
    return count;
}

// Each line of a section as whole numbers, at least the given count of them.
template <typename Take>
void readRows(std::istream &in, std::size_t least, Take take)
{
    const int count = readCount(in);
    std::vector<int> values;
    for (int i = 0; i < count; ++i) {
        std::istringstream line(nextLine(in));
        values.clear();
        int value = 0;
        while (values.size() < least && line >> value)
            values.push_back(value);
        if (values.size() < least)
            fail("the mesh file has a short element line");
        take(values);
    }
}

// netgen's own text format: of its sections, the points, the surface triangles
// with their face and domains, and the tetrahedra with their domain. Numbers
// from 1 there, from 0 here.
VolumeMesh readMeshFile(const std::string &path)
{
    std::ifstream in(path);
    if (!in)
        fail("netgen wrote no mesh file");
    VolumeMesh mesh;
    std::string line;
    while (std::getline(in, line)) {
        const auto end = line.find_last_not_of(" \t\r");
        line.erase(end == std::string::npos ? 0 : end + 1);
        if (line.rfind("surfaceelements", 0) == 0) {
            // face, boundary condition, domain in, domain out, point count, points
            readRows(in, 8, [&mesh](const std::vector<int> &v) {
                if (v[4] != 3)
                    fail("the mesh has a surface element that is no triangle");
                mesh.triangles.push_back({{v[5] - 1, v[6] - 1, v[7] - 1}, v[0], v[2], v[3]});
            });
        } else if (line == "volumeelements") {
            // domain, point count, points
            readRows(in, 6, [&mesh](const std::vector<int> &v) {
                if (v[1] != 4)
                    fail("the mesh has a volume element that is no tetrahedron");
                // netgen turns its tetrahedra the other way.
                mesh.tetrahedra.push_back({{v[2] - 1, v[4] - 1, v[3] - 1, v[5] - 1}, v[0]});
            });
        } else if (line == "points") {
            const int count = readCount(in);
            mesh.points.reserve(std::size_t(count));
            for (int i = 0; i < count; ++i) {
                std::istringstream row(nextLine(in));
                servoce::point3 point;
                if (!(row >> point.x >> point.y >> point.z))
                    fail("the mesh file has a bad point");
                mesh.points.push_back(point);
            }
        }
    }
    const auto outside = [&mesh](int index) { return index < 0 || std::size_t(index) >= mesh.points.size(); };
    for (const VolumeMesh::Tetrahedron &tetrahedron : mesh.tetrahedra) {
        for (int index : tetrahedron.vertices) {
            if (outside(index))
                fail("the mesh file names a point it does not have");
        }
    }
    for (const VolumeMesh::Triangle &triangle : mesh.triangles) {
        for (int index : triangle.vertices) {
            if (outside(index))
                fail("the mesh file names a point it does not have");
        }
    }
    return mesh;
}

} // namespace

NetgenSession::NetgenSession()
{
    nglib::Ng_Init();
    // Its steps would flood the program's log; its errors still reach it.
    netgen::printmessage_importance = 0;
}

NetgenSession::~NetgenSession()
{
    nglib::Ng_Exit();
}

namespace netgenMesher {

VolumeMesh meshSolids(const ShapeList &solids, const VolumeMeshParameters &parameters)
{
    const std::lock_guard<std::mutex> lock(runMutex);
    std::vector<servoce::shape> parts;
    for (const servoce::shape &solid : solids) {
        if (!solid.is_empty())
            parts.push_back(solid);
    }
    if (parts.empty())
        fail("there is no solid to mesh");
    const servoce::shape fragments = servoce::make_fragments(parts);
    if (fragments.is_null() || fragments.solids().empty())
        fail("the solids could not be split against each other");

    // netgen reads its geometry from a file only.
    const QTemporaryDir folder;
    if (!folder.isValid())
        fail("no temporary folder for the mesh: " + folder.errorString().toStdString());
    const std::string geometryPath = folder.filePath(QStringLiteral("period.brep")).toStdString();
    const std::string meshPath = folder.filePath(QStringLiteral("period.vol")).toStdString();
    if (!servoce::write_brep(fragments, geometryPath))
        fail("the solids could not be written for netgen");

    nglib::Ng_OCC_Geometry *geometry = nglib::Ng_OCC_Load_BREP(geometryPath.c_str());
    if (!geometry)
        fail("netgen could not read the solids");
    const NetgenRun run(geometry);

    nglib::Ng_Meshing_Parameters settings;
    settings.maxh = parameters.maxh;
    settings.minh = parameters.minh;
    settings.optsteps_2d = parameters.optimizeSteps2d;
    settings.optsteps_3d = parameters.optimizeSteps3d;
    check(nglib::Ng_OCC_SetLocalMeshSize(run.geometry(), run.mesh(), &settings), "set the local mesh size");
    check(nglib::Ng_OCC_GenerateEdgeMesh(run.geometry(), run.mesh(), &settings), "mesh the edges");
    // The face step reports an error on some good meshes, a single box among them:
    // its triangles are judged by the volume step, which stops on an inconsistent surface.
    nglib::Ng_OCC_GenerateSurfaceMesh(run.geometry(), run.mesh(), &settings);
    if (nglib::Ng_GetNSE(run.mesh()) == 0)
        fail("netgen made no surface triangles");
    check(nglib::Ng_GenerateVolumeMesh(run.mesh(), &settings), "mesh the volume");
    nglib::Ng_SaveMesh(run.mesh(), meshPath.c_str());
    VolumeMesh mesh = readMeshFile(meshPath);
    // netgen reports success on shapes that enclose no volume.
    if (mesh.isEmpty())
        fail("netgen made no tetrahedra");
    return mesh;
}

NetgenProgress progress()
{
    char *task = nullptr;
    double percent = 0.0;
    Ng_GetStatus(&task, percent);
    return NetgenProgress{task ? QString::fromLatin1(task) : QString(), int(percent)};
}

} // namespace netgenMesher
