// What the editor shows is what the session's record holds is what the host receives: for
// every protocol and header state, against a polite host and against hosts that push their
// status between the replies, repeat their acknowledgements or send them ahead.
#include "commparms/ExchangeTexts.h"
#include "commparms/ParmsRules.h"
#include "commparms/forms/frmCommParms.h"
#include "hostsim/HostPackets.h"
#include "protocol/PacketTypes.h"
#include "security/FirstStore.h"
#include "support/DesktopProgram.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>

#include <gtest/gtest.h>

namespace corvane {
namespace {

using test::control;
using test::editingPort;
using test::waitFor;
using test::whenModal;

class ShownIsSent : public test::DesktopProgramTest {
public:
    void SetUp() override
    {
        DesktopProgramTest::SetUp();
        ASSERT_EQ(createFirstUserStore(plant.folder.places().storeFile), FirstStore::Created);
    }
};

constexpr std::int16_t Ports = 14; // protocols 0-6, the header stripped and not

// Rows 0-13 as the host holds them: every protocol with the purge option ticked, the header
// stripped for the first seven and not for the rest, header values left behind in all.
void holdEveryProtocolAndHeaderState(PortParmsTables& parms)
{
    for (std::int16_t row = 0; row < Ports; ++row) {
        PortCommParms& p = parms.PortCommParmsTable[static_cast<std::size_t>(row)];
        p.SpecificProtocol = static_cast<std::int16_t>(row % 7);
        p.bPurgeIfInactive = TrueValue;
        p.StripOutgoingHeader = row < 7 ? TrueValue : FalseValue;
        p.OutHdrEobVal = TrueValue;
        p.OutHdrVal1 = 13;
        p.OutHdrVal2 = 10;
    }
}

struct Shown {
    bool purgeTicked, purgeEnabled, stripTicked, eobTicked, headerEnabled;
    QString value1, value2;
};

Shown shownOn(frmCommParms& editor)
{
    return {control<QCheckBox>(editor, "ckPurgeIfInactive").isChecked(),
        control<QCheckBox>(editor, "ckPurgeIfInactive").isEnabled(),
        control<QCheckBox>(editor, "StripOutgoingHeader").isChecked(),
        control<QCheckBox>(editor, "chkOutHdrEOBVal").isChecked(),
        control<QLineEdit>(editor, "txtOutHdrVal1").isEnabled(), control<QLineEdit>(editor, "txtOutHdrVal1").text(),
        control<QLineEdit>(editor, "txtOutHdrVal2").text()};
}

TEST_F(ShownIsSent, FormRecordAndWireAgreeForEveryProtocolAndHeaderState)
{
    for (const bool pushing : {false, true}) {
        SCOPED_TRACE(pushing ? "status pushed before every reply" : "a polite host");
        const int before = plant.host.updatesCompleted();
        QMetaObject::Connection push;
        if (pushing)
            push = QObject::connect(&plant.host, &hostsim::HostSimulator::packetReceived, &plant.host,
                [this] { plant.host.sendRaw(hostsim::statusReply(plant.host.plant().status)); });
        holdEveryProtocolAndHeaderState(plant.host.plant().parms);
        // Under pushed status, General with the header stripped and GE 2000 without.
        std::vector<std::int16_t> rows;
        for (std::int16_t row = 0; row < Ports; ++row)
            if (!pushing || row == 0 || row == 7 + protocol::Ge2000)
                rows.push_back(row);
        std::vector<Shown> shown;
        whenModal<frmCommParms>(
            [&](frmCommParms& editor) {
                for (const std::int16_t row : rows) {
                    if (row > 0)
                        control<QSpinBox>(editor, "PortSpin").setValue(row);
                    shown.push_back(shownOn(editor));
                    QTest::mouseClick(&control<QPushButton>(editor, "cmdUpdate"), Qt::LeftButton);
                }
                QTest::mouseClick(&control<QPushButton>(editor, "cmdExit"), Qt::LeftButton);
            },
            10000);
        frmCVRemote& window = start(editingPort(1));
        window.session().setPortSpinNoticeShown(); // the notice of moving to another port is told elsewhere
        const auto walked = static_cast<int>(rows.size());
        ASSERT_TRUE(waitFor([&] { return plant.host.updatesCompleted() == before + walked; }, 10000));
        ASSERT_EQ(shown.size(), rows.size());
        const PortParmsTables& mine = window.session().parmsTables();
        for (std::size_t i = 0; i < rows.size(); ++i) {
            const std::int16_t row = rows[i];
            SCOPED_TRACE(row);
            const auto r = static_cast<std::size_t>(row);
            const PortCommParms& record = mine.PortCommParmsTable[r];
            const PortCommParms& wire = plant.host.plant().parms.PortCommParmsTable[r];
            const bool general = record.SpecificProtocol == protocol::General;
            const bool stripped = row < 7;
            // The rules of showing a record: what they allow of what the host held.
            EXPECT_EQ(record.bPurgeIfInactive, general ? TrueValue : FalseValue);
            EXPECT_EQ(record.OutHdrEobVal, stripped ? TrueValue : FalseValue);
            EXPECT_EQ(record.OutHdrVal1, stripped ? 13 : -1);
            // The form shows the record.
            const Shown& s = shown[i];
            EXPECT_EQ(s.purgeTicked, record.bPurgeIfInactive != 0);
            EXPECT_EQ(s.purgeEnabled, general);
            EXPECT_EQ(s.stripTicked, stripped);
            EXPECT_EQ(s.eobTicked, record.OutHdrEobVal != 0);
            EXPECT_EQ(s.headerEnabled, stripped);
            EXPECT_EQ(s.value1, QString::fromStdString(asciiFieldText(record.OutHdrVal1)));
            EXPECT_EQ(s.value2, QString::fromStdString(asciiFieldText(record.OutHdrVal2)));
            // The wire carries the record.
            EXPECT_EQ(wire.bPurgeIfInactive, record.bPurgeIfInactive);
            EXPECT_EQ(wire.StripOutgoingHeader, record.StripOutgoingHeader);
            EXPECT_EQ(wire.OutHdrEobVal, record.OutHdrEobVal);
            for (auto value : {&PortCommParms::OutHdrVal1, &PortCommParms::OutHdrVal2, &PortCommParms::OutHdrVal3,
                     &PortCommParms::OutHdrVal4, &PortCommParms::OutHdrVal5, &PortCommParms::OutHdrVal6})
                EXPECT_EQ(wire.*value, record.*value);
        }
        QObject::disconnect(push);
        window.close();
        ASSERT_TRUE(waitFor([this] { return !plant.host.hasTerminal(); }));
    }
}

// A host whose acknowledgements outnumber the sections sent leaves the update uncertain: the user
// is told, no trailer goes, and the editor shows the port no more until it is fetched again.
TEST_F(ShownIsSent, AnUpdateTheHostOverAcknowledgesIsUncertain)
{
    for (const bool duplicate : {true, false}) {
        SCOPED_TRACE(duplicate ? "every section acknowledged twice" : "acknowledging ahead");
        plant.host.faults.duplicateAck = duplicate;
        plant.host.faults.earlyAck = !duplicate;
        bool told = false;
        test::pressOk(updateUncertain(15), told);
        QString state;
        bool updateOn = true;
        whenModal<frmCommParms>(
            [&](frmCommParms& editor) {
                test::typeFooter(editor, QStringLiteral("M98"));
                QTest::mouseClick(&control<QPushButton>(editor, "cmdUpdate"), Qt::LeftButton);
                state = control<QLabel>(editor, "lblFetchState").text();
                updateOn = control<QPushButton>(editor, "cmdUpdate").isEnabled();
                QTest::mouseClick(&control<QPushButton>(editor, "cmdExit"), Qt::LeftButton);
            },
            10000);
        frmCVRemote& window = start(editingPort(15));
        ASSERT_TRUE(waitFor([&] { return !state.isEmpty(); }, 10000));
        EXPECT_TRUE(told);
        EXPECT_TRUE(state.contains(QStringLiteral("uncertain"))) << state.toStdString();
        EXPECT_FALSE(updateOn);
        ASSERT_TRUE(test::waitUntilIdle());
        EXPECT_EQ(plant.receivedOfType(packet_type::UpdateComplete), 0u);
        window.close();
        ASSERT_TRUE(waitFor([this] { return !plant.host.hasTerminal(); }));
    }
}

} // namespace
} // namespace corvane
