#include "support/NestedFile.h"

#include <QFile>
#include <QString>
#include <QStringList>
#include <vector>

namespace viewertest {

namespace {

/// Writes entities behind those of a file of one part.
class EntityWriter {
public:
  int Add(const QString& entity)
  {
    m_text += QString("#%1 = %2;\n").arg(++m_last).arg(entity);
    return m_last;
  }
  int AddPlace(double x)
  {
    const int point = Add(QString("CARTESIAN_POINT('',(%1,0.,0.))").arg(x, 0, 'f', 1));
    const int up = Add("DIRECTION('',(0.,0.,1.))");
    const int right = Add("DIRECTION('',(1.,0.,0.))");
    return Add(QString("AXIS2_PLACEMENT_3D('',#%1,#%2,#%3)").arg(point).arg(up).arg(right));
  }
  [[nodiscard]] QByteArray GetText() const { return m_text.toUtf8(); }

private:
  QString m_text;
  int m_last = 100'000;
};

/// What a product is used by: its definition and its geometry.
struct Product {
  int definition;
  int geometry;
};

Product AddAssembly(EntityWriter& writer, const QString& name, const std::vector<int>& places)
{
  QStringList items;
  for (const int place : places) {
    items << QString("#%1").arg(place);
  }
  const int product = writer.Add(QString("PRODUCT('%1','%1','',(#8))").arg(name));
  const int formation = writer.Add(QString("PRODUCT_DEFINITION_FORMATION('','',#%1)").arg(product));
  const int definition = writer.Add(QString("PRODUCT_DEFINITION('design','',#%1,#9)").arg(formation));
  const int shape = writer.Add(QString("PRODUCT_DEFINITION_SHAPE('','',#%1)").arg(definition));
  const int geometry = writer.Add(QString("SHAPE_REPRESENTATION('',(%1),#345)").arg(items.join(',')));
  writer.Add(QString("SHAPE_DEFINITION_REPRESENTATION(#%1,#%2)").arg(shape).arg(geometry));
  return {definition, geometry};
}

void AddOccurrence(EntityWriter& writer, const Product& parent, const Product& child, int origin, int place)
{
  const int usage = writer.Add(QString("NEXT_ASSEMBLY_USAGE_OCCURRENCE('%1','','',#%2,#%3,$)")
                                   .arg(place)
                                   .arg(parent.definition)
                                   .arg(child.definition));
  const int shape = writer.Add(QString("PRODUCT_DEFINITION_SHAPE('Placement','',#%1)").arg(usage));
  const int move = writer.Add(QString("ITEM_DEFINED_TRANSFORMATION('','',#%1,#%2)").arg(origin).arg(place));
  const int relation = writer.Add(
      QString("( REPRESENTATION_RELATIONSHIP('','',#%1,#%2) REPRESENTATION_RELATIONSHIP_WITH_TRANSFORMATION(#%3) "
              "SHAPE_REPRESENTATION_RELATIONSHIP() )")
          .arg(child.geometry)
          .arg(parent.geometry)
          .arg(move));
  writer.Add(QString("CONTEXT_DEPENDENT_SHAPE_REPRESENTATION(#%1,#%2)").arg(relation).arg(shape));
}

}  // namespace

QByteArray MakeNestedFile(int width, int levels)
{
  QFile leaf(SAMPLES_DIR "/external-references/leaf.stp");
  if (!leaf.open(QIODevice::ReadOnly)) {
    return {};
  }
  QByteArray bytes = leaf.readAll();
  EntityWriter writer;
  const int origin = writer.AddPlace(0);
  Product below{5, 10};
  double size = 30;
  for (int level = 1; level <= levels; ++level, size *= width) {
    std::vector<int> places;
    for (int i = 0; i < width; ++i) {
      places.push_back(writer.AddPlace(size * i));
    }
    std::vector<int> items = places;
    items.push_back(origin);
    const Product assembly = AddAssembly(writer, QString("level %1").arg(level), items);
    for (const int place : places) {
      AddOccurrence(writer, assembly, below, origin, place);
    }
    below = assembly;
  }
  return bytes.insert(bytes.lastIndexOf("ENDSEC;"), writer.GetText());
}

}  // namespace viewertest
