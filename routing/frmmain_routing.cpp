// The routing views of the main window: a folder's default map, the map on
// one message, and the messages of a routing agent's folder.
#include "app/frmmain.h"
#include "app/generaldate.h"
#include "app/hourglass.h"
#include "app/program.h"
#include "catalogue/reportwindow.h"
#include "navigation/nodekinds.h"
#include "platform/com/routine.h"
#include "platform/controls/sstree.h"
#include "platform/mapi/folder.h"
#include "platform/mapi/session.h"
#include "platform/mapi/tags.h"
#include "platform/routing/map.h"
#include "platform/routing/processinstance.h"
#include "routing/frmmap.h"
#include "routing/frmmessages.h"
#include "routing/maprows.h"
#include "routing/objectref.h"

#include <QPointer>

using controls::SSTree;

namespace {

const QString kMapSubject = QStringLiteral("Routing Map Message");

/// The selected node's folder node when the selection is a routing agent
/// and the current object is named; null otherwise.
QTreeWidgetItem *routingAgentFolder(const frmMain &main)
{
    QTreeWidgetItem *selected = main.treOutl->selectedItem();
    if (!selected || SSTree::image(selected) != navigation::kImageRoutingAgent)
        return nullptr;
    if (main.strEntryID.isEmpty() && main.strStoreID.isEmpty())
        return nullptr;
    return selected->parent();
}

QString fieldText(const QVariant &value)
{
    return value.typeId() == QMetaType::QByteArray ? QString::fromLatin1(value.toByteArray())
                                                   : value.toString();
}

/// Opens the attached map; one with no rows gives the message `noMap`, one
/// with rows is shown in frmMap under `gridCaption`, the window titled
/// `formCaption` where that isn't empty.
void showMap(frmMain &main, routing::Map &map, const QString &noMap, const QString &formCaption,
             const QString &gridCaption)
{
    com::ResumeNext routine;
    routine.step([&] { map.Open(0); });
    if (routine.value([&] { return map.RowCount(); }, 0) == 0) {
        main.prompter().msgBox(noMap, ui::Buttons::OK, ui::Icon::Information, 1, QString());
        return;
    }
    const QPointer<catalogue::ReportWindow> form = routing::newFrmMap(main);
    routing::fillMapGrid(map, *form->SSDBGrid1);
    if (!formCaption.isEmpty())
        form->setWindowTitle(formCaption);
    form->SSDBGrid1->setCaption(gridCaption);
    form->exec();
}

} // namespace

void frmMain::mnuFileRouteMap_Click()
{
    QTreeWidgetItem *parent = routingAgentFolder(*this);
    if (!parent)
        return;
    com::ResumeNext routine;
    const mapi::Session &session = *m_program.gobjSession;
    std::optional<mapi::Message> binding;
    std::optional<mapi::Folder> folder;
    routine.step([&] { binding = session.GetMessage(strEntryID, strStoreID); });
    routine.step([&] { folder = session.GetFolder(SSTree::key(parent), SSTree::tag(parent)); });
    std::optional<mapi::MessageList> hidden;
    routine.step([&] {
        hidden = routing::objectRef(folder).HiddenMessages();
        hidden->Filter().setType(QStringLiteral("IPM.Note"));
    });
    routing::Map map;
    QString routeType;
    // A folder with hidden notes keeps its map in the one of that subject; one
    // with none has it on the agent's binding message.
    if (routine.test([&] { return routing::objectRef(hidden).Count() != 0; })) {
        routine.step([&] {
            for (int i = 1; i <= hidden->Count(); ++i) {
                const mapi::Message candidate = hidden->Item(i);
                if (candidate.Subject() == kMapSubject) {
                    map.attach(candidate);
                    routeType = fieldText(candidate.Fields(QStringLiteral("RouteType")).Value());
                    break;
                }
            }
        });
    } else {
        routine.step([&] { map.attach(routing::objectRef(binding)); });
    }
    showMap(*this, map, QStringLiteral("Cannot obtain default map for this folder."),
            routeType.isEmpty() ? QString() : routeType + QStringLiteral(" Routing Map"),
            StripCurrentUser(SSTree::fullPath(parent)));
}

void frmMain::DisplayMap(const QString &strID, const QString &strStore, const QString &strCaption)
{
    com::ResumeNext routine;
    routing::Map map;
    routine.step([&] { map.attach(m_program.gobjSession->GetMessage(strID, strStore)); });
    showMap(*this, map, QStringLiteral("A map has not been installed on this Workitem."), QString(),
            strCaption);
}

void frmMain::mnuFileProcInst_Click()
{
    if (routingAgentFolder(*this))
        DisplayProcInst();
}

void frmMain::DisplayProcInst()
{
    com::ResumeNext routine;
    QTreeWidgetItem *selected = treOutl->selectedItem();
    QTreeWidgetItem *parent = selected ? selected->parent() : nullptr;
    if (!parent)
        return;
    std::optional<mapi::MessageList> messages;
    routine.step([&] {
        messages = m_program.gobjSession->GetFolder(SSTree::key(parent), SSTree::tag(parent)).Messages();
    });
    if (routine.test([&] { return routing::objectRef(messages).Count() == 0; })) {
        prompter().msgBox(QStringLiteral("There are no items to display in this folder."), ui::Buttons::OK,
                          ui::Icon::Information, 1, QString());
        return;
    }
    SetHourglass(true);
    routine.step([&] { messages->Sort(2, mapi::PR_MESSAGE_DELIVERY_TIME); });
    const QPointer<catalogue::ReportWindow> form = routing::newFrmMessages(*this);
    // One instance object for the whole listing: a message that is no
    // instance shows an empty status beside the numbers read last.
    routing::ProcessInstance instance;
    // The listing reads one snapshot of the store.
    std::unique_ptr<store::Database::Transaction> snapshot;
    routine.step([&] { snapshot = m_program.gobjSession->BeginRead(); });
    routine.step([&] {
        for (const mapi::Message &message : *messages) {
            routine.step([&] {
                instance.attach(message);
                instance.Open();
            });
            routine.step([&] {
                const QDateTime received = message.TimeReceived();
                form->SSDBGrid1->AddItem(
                    QStringList{message.Subject(), fieldText(message.Fields(mapi::PR_SENDER_NAME).Value()),
                                received.isValid() ? generalDate(received) : QString(),
                                QString::number(instance.RUI()), instance.Status(),
                                QString::number(instance.CurrentRow()), message.ID(), message.StoreID()}
                        .join(QLatin1Char('\t')));
            });
        }
    });
    snapshot.reset();
    SetHourglass(false);
    const QString strFolderPath = StripCurrentUser(SSTree::fullPath(parent));
    form->strFolderPath = strFolderPath;
    form->setWindowTitle(QStringLiteral("Messages - ") + strFolderPath);
    form->exec();
}
