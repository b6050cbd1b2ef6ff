#include "document/DocumentTypes.h"
#include "ui/Controls/EnumComboBoxes.h"

#include <QMetaProperty>
#include <QSignalSpy>
#include <gtest/gtest.h>

namespace {

QStringList textsOf(const QComboBox &box)
{
    QStringList texts;
    for (int i = 0; i < box.count(); ++i)
        texts << box.itemText(i);
    return texts;
}

// Every combo box edits through `currentValue`, announced with the new value.
void expectUserPropertyCurrentValue(const QObject &box)
{
    const QMetaProperty user = box.metaObject()->userProperty();
    EXPECT_STREQ(user.name(), "currentValue") << box.metaObject()->className();
    ASSERT_TRUE(user.hasNotifySignal()) << box.metaObject()->className();
    EXPECT_EQ(user.notifySignal().name(), QByteArray("currentValueChanged")) << box.metaObject()->className();
}

} // namespace

TEST(EnumComboBoxTest, ItemsAndTheirTextsComeFromTheElements)
{
    WindingLayersComboBox layers;
    EXPECT_EQ(textsOf(layers), QStringList({"Single layer", "Double layer"}));
    EXPECT_EQ(layers.value(1), 2);
    WindingLayersOrientationComboBox orientation;
    EXPECT_EQ(textsOf(orientation), QStringList({"Upper / Lower", "Left / Right"}));
    WindingTypeComboBox type;
    EXPECT_EQ(textsOf(type), QStringList({"Planar", "Toroidal"}));
    MiddleTypeComboBox middle;
    EXPECT_EQ(textsOf(middle), QStringList({"Yoke", "Yokeless"}));
    PoleArrangementComboBox poles;
    EXPECT_EQ(textsOf(poles), QStringList({"N-N", "N-S", "N-S-N-S", "N-S-S-N", "N-N-S-S", "N-N-N-N"}));
    WindingConnectionComboBox connection;
    EXPECT_EQ(connection.count(), 0);

    for (const QObject *box : std::initializer_list<const QObject *>{&layers, &orientation, &type, &middle, &poles,
                                                                      &connection})
        expectUserPropertyCurrentValue(*box);
}

TEST(EnumComboBoxTest, NoCurrentItemReadsAsTheUnknownValue)
{
    MiddleTypeComboBox middle;
    middle.setCurrentIndex(-1);
    EXPECT_EQ(middle.currentValue(), ElementTypes::UnknownType);
    PoleArrangementComboBox poles;
    poles.setCurrentIndex(-1);
    EXPECT_EQ(poles.currentValue(), PoleArrangement::Unknown);
    EXPECT_EQ(poles.value(17), PoleArrangement::Unknown);
    WindingLayersComboBox layers;
    layers.setCurrentIndex(-1);
    EXPECT_EQ(layers.currentValue(), 0);
    WindingConnectionComboBox connection;
    EXPECT_TRUE(connection.currentValue().isEmpty());
}

TEST(EnumComboBoxTest, SettingAValueAnnouncesItAndAValueWithoutItemChangesNothing)
{
    // Signals carry the enumerations by their registered names, as queued connections and scripts need them.
    registerDocumentTypes();
    WindingTypeComboBox type;
    QSignalSpy changed(&type, &WindingTypeComboBox::currentValueChanged);
    type.setCurrentValue(Winding::Toroidal);
    ASSERT_EQ(changed.size(), 1);
    EXPECT_EQ(changed.at(0).at(0).value<Winding::Type>(), Winding::Toroidal);
    type.setCurrentValue(Winding::Type(7));
    EXPECT_EQ(type.currentValue(), Winding::Toroidal);
    EXPECT_EQ(changed.size(), 1);

    MiddleTypeComboBox middle;
    EXPECT_TRUE(middle.metaObject()->userProperty().write(&middle, QVariant::fromValue(ElementTypes::Yokeless)));
    EXPECT_EQ(middle.currentValue(), ElementTypes::Yokeless);
}

TEST(EnumComboBoxTest, ACutListOfPoleArrangementsIgnoresValuesOutsideIt)
{
    registerDocumentTypes();
    PoleArrangementComboBox poles;
    poles.setCurrentValue(PoleArrangement::NSSN);
    QSignalSpy changed(&poles, &PoleArrangementComboBox::currentValueChanged);
    poles.setItems({PoleArrangement::NS, PoleArrangement::NSSN, PoleArrangement::Unknown, QStringLiteral("x")});
    EXPECT_TRUE(changed.isEmpty()) << "the list is replaced silently";
    EXPECT_EQ(textsOf(poles), QStringList({"N-S", "N-S-S-N", "Unknown pole arrangement"}));
    EXPECT_EQ(poles.currentValue(), PoleArrangement::NSSN) << "the current value stays when it is kept";

    poles.setCurrentValue(PoleArrangement::NNNN);
    EXPECT_EQ(poles.currentValue(), PoleArrangement::NSSN);
    EXPECT_TRUE(changed.isEmpty());
}

TEST(EnumComboBoxTest, ConnectionsAreTheGivenTexts)
{
    WindingConnectionComboBox connection;
    connection.setItems({QStringLiteral("1-2"), QStringLiteral("1||2")});
    EXPECT_EQ(connection.currentValue(), QStringLiteral("1-2"));
    QSignalSpy changed(&connection, &WindingConnectionComboBox::currentValueChanged);
    connection.setCurrentValue(QStringLiteral("1||2"));
    ASSERT_EQ(changed.size(), 1);
    EXPECT_EQ(changed.at(0).at(0).toString(), QStringLiteral("1||2"));
    connection.setItems({QStringLiteral("1-2-3")});
    EXPECT_EQ(connection.currentValue(), QStringLiteral("1-2-3")) << "a lost value gives way to the first item";
}
