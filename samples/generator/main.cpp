#include "SampleDocument.h"

#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <BRep_Builder.hxx>
#include <Message.hxx>
#include <Message_Messenger.hxx>
#include <Quantity_Color.hxx>
#include <Standard_Failure.hxx>
#include <TopoDS_Compound.hxx>

#include <exception>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

namespace {

using samplegen::SampleDocument;

const Quantity_Color Steel(0.6, 0.6, 0.6, Quantity_TOC_sRGB);
const Quantity_Color Brass(0.8, 0.6, 0.2, Quantity_TOC_sRGB);
const Quantity_Color Red(1.0, 0.0, 0.0, Quantity_TOC_sRGB);
const Quantity_Color Green(0.0, 1.0, 0.0, Quantity_TOC_sRGB);

TopoDS_Shape MakeBox(double x, double y, double z)
{
  return BRepPrimAPI_MakeBox(x, y, z).Solid();
}

TopoDS_Shape MakeBoxAt(double x)
{
  return BRepPrimAPI_MakeBox(gp_Pnt(x, 0, 0), 1, 1, 1).Solid();
}

TopoDS_Shape MakeCompound(const std::vector<TopoDS_Shape>& solids)
{
  BRep_Builder builder;
  TopoDS_Compound compound;
  builder.MakeCompound(compound);
  for (const TopoDS_Shape& solid : solids) {
    builder.Add(compound, solid);
  }
  return compound;
}

/// A pump: a bolt set that occurs twice with the same bolts in it, a valve block of three solids, and a shelf of names
/// that are easy to get wrong.
bool WriteNestedAssembly(const std::filesystem::path& file)
{
  SampleDocument document;
  const TDF_Label frame = document.AddPart(MakeBox(20, 10, 1), "frame");
  document.SetColor(frame, Steel);
  document.SetLayer(frame, "Structure");
  const TDF_Label bolt = document.AddPart(BRepPrimAPI_MakeCylinder(0.5, 4).Solid(), "bolt M1");
  document.SetColor(bolt, Brass);
  document.SetLayer(bolt, "Fasteners");
  const TDF_Label washer = document.AddPart(BRepPrimAPI_MakeCylinder(1, 0.2).Solid(), "washer");
  document.SetLayer(washer, "Fasteners");

  const std::vector<TopoDS_Shape> solids = {MakeBoxAt(0), MakeBoxAt(2), MakeBoxAt(4)};
  const TDF_Label block = document.AddPart(MakeCompound(solids), "valve block");
  document.SetColor(document.AddBody(block, solids[0], "core"), Red);
  document.SetColor(document.AddBody(block, solids[1], "крышка"), Green);

  const TDF_Label pump = document.AddAssembly("pump");
  const TDF_Label boltSet = document.AddAssembly("bolt set");
  document.AddOccurrence(boltSet, bolt, "bolt:1", gp_Vec(0, 0, 0));
  document.AddOccurrence(boltSet, washer, "washer:1", gp_Vec(0, 0, 4));
  document.AddOccurrence(boltSet, bolt, "bolt:2", gp_Vec(5, 0, 0));
  document.AddOccurrence(boltSet, bolt, "bolt:3", gp_Vec(10, 0, 0));

  document.AddOccurrence(pump, frame, "frame:1", gp_Vec(0, 0, 0));
  document.AddOccurrence(pump, boltSet, "bolt set:1", gp_Vec(0, 0, 1));
  document.AddOccurrence(pump, boltSet, "bolt set:2", gp_Vec(0, 5, 1));
  document.AddOccurrence(pump, block, "valve block:1", gp_Vec(0, 0, 6));

  const TDF_Label names = document.AddAssembly("Namen, names, имена, 名前");
  const std::vector<std::string> oddNames = {
      "Gehäuse für Öl",
      "корпус насоса",
      "外壳",
      "ポンプ",
      "펌프",
      "مضخة",
      "משאבה",
      "Αντλία",
      "gear ⚙ 😀",
      "it's a \"quoted\" name",
      "back\\slash and /slash/",
      "semicolon; (brackets), #42 = 'x'",
      "",
      std::string(300, 'n'),
  };
  double at = 0;
  for (const std::string& name : oddNames) {
    at += 3;
    document.AddOccurrence(names, washer, name, gp_Vec(at, 0, 0));
  }
  document.AddOccurrence(pump, names, "names:1", gp_Vec(0, 0, 10));
  return document.Write(file);
}

/// A hinge whose two parts stand in files of their own; one of the files is then taken away.
bool WriteExternalReferences(const std::filesystem::path& folder)
{
  SampleDocument document;
  const TDF_Label leaf = document.AddPart(MakeBox(4, 2, 1), "leaf");
  document.SetColor(leaf, Steel);
  const TDF_Label pin = document.AddPart(BRepPrimAPI_MakeCylinder(0.5, 4).Solid(), "pin");
  const TDF_Label hinge = document.AddAssembly("hinge");
  document.AddOccurrence(hinge, leaf, "leaf:1", gp_Vec(0, 0, 0));
  document.AddOccurrence(hinge, leaf, "leaf:2", gp_Vec(4, 0, 0));
  document.AddOccurrence(hinge, pin, "pin:1", gp_Vec(4, 0, 1));
  if (!document.WriteWithExternalParts(folder / "hinge.stp")) {
    return false;
  }
  return std::filesystem::remove(folder / "pin.stp");
}

bool WriteSamples(const std::filesystem::path& folder)
{
  const std::filesystem::path hingeFolder = folder / "external-references";
  std::filesystem::create_directories(hingeFolder);
  return WriteNestedAssembly(folder / "nested-assembly.stp") && WriteExternalReferences(hingeFolder);
}

}  // namespace

int main(int argc, char** argv)
{
  if (argc != 2) {
    std::cerr << "usage: guitree-samples FOLDER\n";
    return 2;
  }
  Message::DefaultMessenger()->ChangePrinters().Clear();
  try {
    if (WriteSamples(argv[1])) {
      return 0;
    }
    std::cerr << "guitree-samples: cannot write the samples to " << argv[1] << '\n';
  } catch (const Standard_Failure& failure) {
    std::cerr << "guitree-samples: " << failure.GetMessageString() << '\n';
  } catch (const std::exception& failure) {
    std::cerr << "guitree-samples: " << failure.what() << '\n';
  }
  return 1;
}
