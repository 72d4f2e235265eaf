#include "support/StepWriter.h"

#include <utility>

namespace stepimporttest {

namespace {

constexpr const char* Contexts = R"(#1=APPLICATION_CONTEXT('design');
#2=PRODUCT_CONTEXT('',#1,'mechanical');
#3=PRODUCT_DEFINITION_CONTEXT('part definition',#1,'design');
#4=(LENGTH_UNIT()NAMED_UNIT(*)SI_UNIT(.MILLI.,.METRE.));
#5=(NAMED_UNIT(*)PLANE_ANGLE_UNIT()SI_UNIT($,.RADIAN.));
#6=(NAMED_UNIT(*)SI_UNIT($,.STERADIAN.)SOLID_ANGLE_UNIT());
#7=(GEOMETRIC_REPRESENTATION_CONTEXT(3)GLOBAL_UNIT_ASSIGNED_CONTEXT((#4,#5,#6))REPRESENTATION_CONTEXT('',''));
#8=CARTESIAN_POINT('',(0.,0.,0.));
#9=DIRECTION('',(0.,0.,1.));
#10=DIRECTION('',(1.,0.,0.));
#11=AXIS2_PLACEMENT_3D('',#8,#9,#10);
#12=DOCUMENT_TYPE('geometry');
#13=IDENTIFICATION_ROLE('external document id and location',$);
#14=EXTERNAL_SOURCE(IDENTIFIER(''));
)";

}  // namespace

StepWriter::StepWriter(std::string schema)
    : m_header(
        "ISO-10303-21;\nHEADER;\nFILE_DESCRIPTION(('test'),'2;1');\n"
        "FILE_NAME('test','2024-01-01T00:00:00',(''),(''),'','','');\nFILE_SCHEMA(('"
        + std::move(schema) + "'));\nENDSEC;\n")
{
}

StepWriter::Definition StepWriter::AddRawProduct(const std::string& id, const std::string& name)
{
  const int product = _Add("PRODUCT(" + id + ',' + name + ",'',(#2))");
  const int formation = _Add("PRODUCT_DEFINITION_FORMATION('',''," + _Ref(product) + ')');
  const int definition = _Add("PRODUCT_DEFINITION('',''," + _Ref(formation) + ",#3)");
  const int shape = _Add("PRODUCT_DEFINITION_SHAPE('',''," + _Ref(definition) + ')');
  const int representation = _Add("SHAPE_REPRESENTATION('',(#11),#7)");
  _Add("SHAPE_DEFINITION_REPRESENTATION(" + _Ref(shape) + ',' + _Ref(representation) + ')');
  return definition;
}

void StepWriter::AddRawOccurrence(Definition assembly, Definition product, const std::string& name)
{
  _Add("NEXT_ASSEMBLY_USAGE_OCCURRENCE('id'," + name + ",''," + _Ref(assembly) + ',' + _Ref(product) + ",$)");
}

void StepWriter::AddReference(Definition product, const std::string& file)
{
  const int document = _Add("DOCUMENT_FILE('" + file + "','','',#12,'',$)");
  _Add("DOCUMENT_REPRESENTATION_TYPE('digital'," + _Ref(document) + ')');
  const int property = _Add("PROPERTY_DEFINITION('external definition',''," + _Ref(document) + ')');
  // The representation stands two entities behind the definition.
  _Add("PROPERTY_DEFINITION_REPRESENTATION(" + _Ref(property) + ',' + _Ref(product + 2) + ')');
  _Add("APPLIED_DOCUMENT_REFERENCE(" + _Ref(document) + ",'',(" + _Ref(product) + "))");
  _Add("APPLIED_EXTERNAL_IDENTIFICATION_ASSIGNMENT('" + file + "',#13,#14,(" + _Ref(document) + "))");
}

void StepWriter::AddEdge(Definition product)
{
  const int end = _Add("CARTESIAN_POINT('',(1.,0.,0.))");
  const int line = _Add("POLYLINE('',(#8," + _Ref(end) + "))");
  const int set = _Add("GEOMETRIC_CURVE_SET('',(" + _Ref(line) + "))");
  _AddGeometry(product, "GEOMETRICALLY_BOUNDED_WIREFRAME_SHAPE_REPRESENTATION", set);
}

void StepWriter::AddDamagedSolid(Definition product)
{
  _AddGeometry(product, "ADVANCED_BREP_SHAPE_REPRESENTATION", _Add("MANIFOLD_SOLID_BREP('',$)"));
}

int StepWriter::MakeTriangles(const std::vector<std::string>& corners)
{
  const int plane = _Add("PLANE('',#11)");
  const int second = _Add("CARTESIAN_POINT('',(1.,0.,0.))");
  std::string faces;
  for (const std::string& corner : corners) {
    const int third = _Add("CARTESIAN_POINT('',(" + corner + ",0.))");
    const int loop = _Add("POLY_LOOP('',(#8," + _Ref(second) + ',' + _Ref(third) + "))");
    const int bound = _Add("FACE_OUTER_BOUND(''," + _Ref(loop) + ",.T.)");
    const int face = _Add("FACE_SURFACE('',(" + _Ref(bound) + ")," + _Ref(plane) + ",.T.)");
    faces += (faces.empty() ? "" : ",") + _Ref(face);
  }
  const int shell = _Add("OPEN_SHELL('',(" + faces + "))");
  return _Add("SHELL_BASED_SURFACE_MODEL('',(" + _Ref(shell) + "))");
}

void StepWriter::AddSurface(Definition product, int surface)
{
  _AddGeometry(product, "MANIFOLD_SURFACE_SHAPE_REPRESENTATION", surface);
}

void StepWriter::_AddGeometry(Definition product, const std::string& type, int item)
{
  const int geometry = _Add(type + "('',(#11," + _Ref(item) + "),#7)");
  // The representation of the product stands two entities behind the definition.
  _Add("SHAPE_REPRESENTATION_RELATIONSHIP('',''," + _Ref(product + 2) + ',' + _Ref(geometry) + ')');
}

std::string StepWriter::GetText() const
{
  return m_header + "DATA;\n" + Contexts + m_data + "ENDSEC;\nEND-ISO-10303-21;\n";
}

int StepWriter::_Add(const std::string& entity)
{
  m_data += _Ref(++m_last) + '=' + entity + ";\n";
  return m_last;
}

}  // namespace stepimporttest
