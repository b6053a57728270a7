#ifndef CALLJOURNAL_CALLLISTDATABASEADAPTERHELPER_H
#define CALLJOURNAL_CALLLISTDATABASEADAPTERHELPER_H

#include <deque>
#include <list>
#include <string>

#include "CallJournalExport.h"
#include "CallListDatabaseAdapterData.h"
#include "CallLogEntryEvent.h"
#include "Contact.h"
#include "DialledCallItem.h"
#include "ForwardedCallItem.h"
#include "JournalServiceObserverIfc.h"
#include "MissedCallItem.h"
#include "NumberType.h"
#include "ReceivedCallItem.h"
#include "TransferNumber.h"

// A program may have macros of these names, as curses.h does. They are set aside here and are back behind the class.
#pragma push_macro("TRUE")
#pragma push_macro("FALSE")
#undef TRUE
#undef FALSE

/// The call log's XML: its vocabulary, the primitives that write and find elements, the converters between enumerations
/// and their words, the codecs of the four kinds of entries, the reader of the missed call list, and the notifications.
///
///     std::string body = CallListDatabaseAdapterHelper::createXMLMissedCallItemBody(entry, false);
///     MissedCallItem copy;
///     CallListDatabaseAdapterHelper::parseXMLMissedCallItem(body.c_str(), copy);
///
/// The format is flat text without blanks, built by appending and read by literal search for "<Tag>" and "</Tag>".
/// Texts are UTF-8. Apart from `init` and `finit` all functions are free of state and may be called from any thread.
/// Nothing fails on malformed XML: what is not found reads as an empty text, false, or the fallback of a converter. A
/// null text is not allowed except where it says so.
class CALLJOURNAL_EXPORT CallListDatabaseAdapterHelper {
public:
    // Request envelope and message keywords.
    static const char* const XMLHEADER;         ///< <?xml version="1.0" encoding="utf-8"?>
    static const char* const REASONFORMESSAGE;  ///< ReasonForMessage
    static const char* const READREQUEST;       ///< read_request
    static const char* const WRITEREQUEST;      ///< write_request
    static const char* const DELETEREQUEST;     ///< delete_request
    static const char* const METHOD;            ///< Method
    static const char* const METHOD_XML_BEGIN;  ///< `<Method>`
    static const char* const METHOD_XML_CLOSE;  ///< `</Method>`
    static const char* const ENTRY;             ///< Entry
    static const char* const VALUE;             ///< Value
    static const char* const ACTIONTYPE;        ///< ActionType
    static const char* const UNIQUEIDTODELETE;  ///< UniqueIdToDelete
    static const char* const TRUE;              ///< True
    static const char* const FALSE;             ///< False

    // Schemas (tables) of the data access service, and the call log type.
    static const char* const DAS_CALLLOG;                ///< CallLog
    static const char* const DAS_CALLLOG_PHONEBOOK;      ///< CallLogPhoneBook
    static const char* const DAS_CALLLOGMISSEDCALLS;     ///< CallLogMissedCalls
    static const char* const DAS_CALLLOGDIALLEDCALLS;    ///< CallLogDialledCalls
    static const char* const DAS_CALLLOGRECEIVEDCALLS;   ///< CallLogReceivedCalls
    static const char* const DAS_CALLLOGFORWARDEDCALLS;  ///< CallLogForwardedCalls
    static const char* const DAS_CALLLOGENABLEDSTATE;    ///< CallLogEnabledState
    static const char* const CALL_LOG_TYPE_MISSED;       ///< Missed

    // Methods of requests and notifications.
    static const char* const GETMISSEDCALLLIST_XML;       ///< getMissedCallList
    static const char* const MISSEDCALLSCOUNTUPDATE_XML;  ///< missedCallsCountUpdate
    static const char* const MISSEDCALLSUPDATE_XML;       ///< missedCallsUpdate
    static const char* const DIALLEDCALLSUPDATE_XML;      ///< dialledCallsUpdate
    static const char* const RECEIVEDCALLSUPDATE_XML;     ///< receivedCallsUpdate
    static const char* const FORWARDEDCALLSUPDATE_XML;    ///< forwardedCallsUpdate

    // Elements of a call list entry.
    static const char* const ITEM;               ///< Item
    static const char* const ITEM_XML_BEGIN;     ///< `<Item>`
    static const char* const ITEM_XML_CLOSE;     ///< `</Item>`
    static const char* const UNIQUEID;           ///< UniqueId
    static const char* const ENTRYID;            ///< EntryId
    static const char* const SURNAME;            ///< Surname
    static const char* const FIRSTNAME;          ///< Firstname
    static const char* const PICTURE;            ///< Picture
    static const char* const PICTURE_CLIP;       ///< PictureClip
    static const char* const VIEWED;             ///< Viewed
    static const char* const CATEGORY;           ///< Category
    static const char* const JSGROUPBY;          ///< JSGroupBy
    static const char* const LOGLIST;            ///< LogList
    static const char* const LOGLIST_XML_BEGIN;  ///< `<LogList>`
    static const char* const LOGLIST_XML_CLOSE;  ///< `</LogList>`

    // Elements of a call.
    static const char* const NUMBER;                     ///< Number
    static const char* const NUMBERTYPE;                 ///< NumberType
    static const char* const CONNECTEDNUMBER;            ///< ConnectedNumber
    static const char* const CONNECTEDNUMBERTYPE;        ///< ConnectedNumberType
    static const char* const CONNECTEDSURNAME;           ///< ConnectedSurname
    static const char* const CONNECTEDFIRSTNAME;         ///< ConnectedFirstName
    static const char* const CONNECTEDNUMBERPRIORITY;    ///< ConnectedNumberPriority
    static const char* const RESOLVEDNUMBER;             ///< ResolvedNumber
    static const char* const TIMEDATE;                   ///< TimeDate
    static const char* const DURATION;                   ///< Duration
    static const char* const COMPLETED_ELSEWHERE;        ///< CompletedElsewhere
    static const char* const TARGETLOG;                  ///< TargetLog
    static const char* const NUMBERPRESENTATION;         ///< NumberPresentation
    static const char* const NAMEPRESENTATION;           ///< NamePresentation
    static const char* const DEFLECTNUMBER;              ///< DeflectNumber
    static const char* const DEFLECTNUMBERTYPE;          ///< DeflectNumberType
    static const char* const DEFLECTNUMBERPRESENTATION;  ///< DeflectNumberPresentation
    static const char* const DEFLECTNAME;                ///< DeflectName
    static const char* const DEFLECTNAMEPRESENTATION;    ///< DeflectNamePresentation
    static const char* const TIMEFORMAT;                 ///< TimeFormat
    static const char* const TRANSFERTYPE;               ///< TransferType
    static const char* const GROUPNAME;                  ///< GroupName
    static const char* const GROUPNUMBER;                ///< GroupNumber
    static const char* const ISBLUETOOTHCALL;            ///< IsBluetoothCall

    // Elements and words of a call-back.
    static const char* const CALLBACKNUMBER;          ///< CallBackNumber
    static const char* const CALLBACKDEVICEID;        ///< CallBackDeviceId
    static const char* const CALLBACKTYPE;            ///< CallBackType
    static const char* const CALLBACKTYPENOTYPE;      ///< NOTYPE
    static const char* const CALLBACKTYPENOREPLY;     ///< NOREPLY
    static const char* const CALLBACKTYPEBUSY;        ///< BUSY
    static const char* const CALLBACKSTATE;           ///< CallBackState
    static const char* const CALLBACKSTATENOSTATE;    ///< NOSTATE
    static const char* const CALLBACKSTATEACTIVE;     ///< ACTIVE
    static const char* const CALLBACKSTATESUSPENDED;  ///< SUSPENDED

    // Words of enumerations. IN_GROUP_CALL differs from its word on purpose: the word is what is stored.
    static const char* const IN_ANSWERED;      ///< IN_ANSWERED
    static const char* const IN_NO_ANSWER;     ///< IN_NO_ANSWER
    static const char* const IN_BUSY;          ///< IN_BUSY
    static const char* const IN_GROUP_MISSED;  ///< IN_GROUP_MISSED
    static const char* const IN_GROUP_CALL;    ///< IN_GROUP_BUSY
    static const char* const OUT_ANSWERED;     ///< OUT_ANSWERED
    static const char* const OUT_NO_ANSWER;    ///< OUT_NO_ANSWER
    static const char* const OUT_BUSY;         ///< OUT_BUSY
    static const char* const ALLOWED;          ///< ALLOWED
    static const char* const NOT_ALLOWED;      ///< NOT_ALLOWED
    static const char* const NOT_AVAILABLE;    ///< NOT_AVAILABLE
    static const char* const FORM_24;          ///< FORM_24
    static const char* const FORM_AM;          ///< FORM_AM
    static const char* const FORM_PM;          ///< FORM_PM
    static const char* const PRIVATE;          ///< PRIVATE
    static const char* const MOBILE;           ///< MOBILE
    static const char* const BUSINESS1;        ///< BUSINESS1
    static const char* const BUSINESS2;        ///< BUSINESS2
    static const char* const NO_ICON;          ///< NO_ICON
    static const char* const TRAN_SOURCE_NUM;  ///< TRANSFER_SOURCE_NUMBER
    static const char* const TRAN_DEST_NUM;    ///< TRANSFER_DESTINATION_NUMBER
    static const char* const TRAN_GROUP_NUM;   ///< TRANSFER_GROUP_NUMBER

    // Elements of a phone book contact. Its id is "UniqueID", a call list entry's is "UniqueId".
    static const char* const PHONEBOOK_UNIQUEID;  ///< UniqueID
    static const char* const OFFICE;              ///< Office
    static const char* const OFFICE2;             ///< Office2
    static const char* const MOBILE_PHONEBOOK;    ///< Mobile
    static const char* const PRIVATE_PHONEBOOK;   ///< Private
    static const char* const EMAIL;               ///< Email
    static const char* const CALLGROUP;           ///< Group
    static const char* const DEFAULTNUMBER;       ///< DefaultNumber
    static const char* const COMPANY;             ///< Company
    static const char* const ADDRESS;             ///< Address
    static const char* const ADDRESS2;            ///< Address2
    static const char* const JOBFUNCTION;         ///< JobFunction
    static const char* const VOICEDIAL;           ///< VoiceDial
    static const char* const EXTERNALID;          ///< ExternalID
    static const char* const CONTACTSOURCE;       ///< ContactSource

    // Primitives. A tag is one of the texts above, without angle brackets; values are written as given, never escaped.

    /// Returns "<tag>".
    static std::string createXMLBegin(const char* tag);

    /// Returns "</tag>".
    static std::string createXMLClose(const char* tag);

    /// Appends "<tag>value</tag>" to `out`, or nothing if `value` is empty.
    static void createXMLField(const char* tag, const std::string& value, std::string& out);

    /// Returns "<tag>value</tag>", or an empty text if `value` is empty.
    static std::string createXMLField(const char* tag, const std::string& value);

    /// The same for a zero-terminated value. Throws std::logic_error if it is null.
    static std::string createXMLField(const char* tag, const char* value);

    /// Returns "<tag>True</tag>" or "<tag>False</tag>".
    static std::string createXMLField(const char* tag, bool value);

    /// Returns "<tag>value</tag>" with the value in signed decimal: from 2147483648 up it comes out negative.
    static std::string createXMLField(const char* tag, unsigned int value);

    /// Wraps `msg` into the schema element of that name, unless the name is empty, and puts the XML declaration in
    /// front.
    static void addXMLHeaderFooter(std::string& msg, const std::string& schemaName);

    /// Stores the text of the first element `tag` at or behind `cursor` in `out`, unescaped by the platform, and
    /// returns the place behind it if it was right at `cursor`; otherwise, and if there is none (`out` is then empty),
    /// returns `cursor`. Called for one element after the other in the order written, it reads in one pass and still
    /// finds elements out of order.
    static const char* getXMLValue2(const char* cursor, const char* tag, std::string& out);

    /// The same for a flag: true only for exactly "True".
    static const char* getXMLValue2(const char* cursor, const char* tag, bool& out);

    /// Cuts the text from the first "<tag>" to the first "</tag>" out of `xml` and stores what was between them in
    /// `out`, not unescaped. Returns false and leaves both untouched if an end tag is missing or nothing is between.
    /// Positions are signed 32-bit numbers, and a missing begin tag is at -1: an end tag alone is then taken from
    /// position length of "<tag>" on; `out` is what is before it but for that length less one, and nothing is cut off.
    static bool getAndRemoveXMLValue(std::string& xml, const char* tag, std::string& out);

    /// Returns `msg` from "<Method>", included, up to "</Method>"; an empty text if either is missing.
    static std::string getMethodFromXMLMsg(const std::string& msg);

    // Converters between enumerations and their words. A value or word outside the tables gives a fallback, named here.

    /// Fallback "OUT_BUSY".
    static std::string convertTargetLog(CallLogEntryEvent::_LogTarget value);
    /// Fallback 6 (OUT_BUSY), but 0 (IN_ANSWERED) for an empty text.
    static CallLogEntryEvent::_LogTarget convertTargetLog(const std::string& word);

    /// Fallback "NOT_AVAILABLE".
    static std::string convertPresentationValue(CallLogEntryEvent::_PresentationValue value);
    /// Fallback 0.
    static CallLogEntryEvent::_PresentationValue convertPresentationValue(const std::string& word);

    /// Fallback "FORM_24".
    static std::string convertTimeFormat(CallLogEntryEvent::_TFormat value);
    /// Fallback 0.
    static CallLogEntryEvent::_TFormat convertTimeFormat(const std::string& word);

    /// Fallback "NO_ICON".
    static std::string convertNumberType(NumberType::NT value);
    /// Fallback 0.
    static NumberType::NT convertNumberType(const std::string& word);

    /// Fallback "TRANSFER_SOURCE_NUMBER".
    static std::string convertTransferNumberTypeValue(TransferNumber::TransferNumberType value);
    /// Fallback 0.
    static TransferNumber::TransferNumberType convertTransferNumberTypeValue(const std::string& word);

    /// "CSV" 3, "WSI" 4, "LDAP" 7, "LOCAL" 8; an empty text for any other value.
    static std::string getOrderedContactSourceToString(Contact::eOrderedContactSource value);
    /// Fallback 0. `word` is not changed.
    static Contact::eOrderedContactSource getOrderedContactSource(std::string& word);

    // Codec of each kind of entry: body, list of calls, one call. The encoders append to `out`; with `onlyUniqueId` the
    // body is nothing but the unique id. Colons in it are dropped.

    /// A missed entry's picture is written as "Picture" and read as "PictureClip".
    static void createXMLMissedCallItemBody(const MissedCallItem& item, std::string& out, bool onlyUniqueId);
    static std::string createXMLMissedCallItemBody(const MissedCallItem& item, bool onlyUniqueId);
    /// Appends the "LogList" element, also for an empty list.
    static void createXMLMissedCallInfoList(const MissedCallItem& item, std::string& out);
    /// Fills each member that the format carries from the text of one "Item"; what is absent gets its default.
    static void getXMLMissedCallInfo(const char* xml, MissedCallItem::MissedCallInfo& info);
    /// Replaces `list` by the calls of the first "LogList"; an empty "Item" ends it. Returns whether any call was
    /// found.
    static bool getXMLMissedCallInfoList(const char* xml, std::list<MissedCallItem::MissedCallInfo>& list);
    /// Fills `item` from a body. Its calls stay as they are if the body holds none.
    static void parseXMLMissedCallItem(const char* xml, MissedCallItem& item);

    static void createXMLDialledCallItemBody(const DialledCallItem& item, std::string& out, bool onlyUniqueId);
    static std::string createXMLDialledCallItemBody(const DialledCallItem& item, bool onlyUniqueId);
    static void createXMLDialledCallInfoList(const DialledCallItem& item, std::string& out);
    static void getXMLDialledCallInfo(const char* xml, DialledCallItem::DialledCallInfo& info);
    static bool getXMLDialledCallInfoList(const char* xml, std::list<DialledCallItem::DialledCallInfo>& list);
    static void parseXMLDialledCallItem(const char* xml, DialledCallItem& item);

    static void createXMLReceivedCallItemBody(const ReceivedCallItem& item, std::string& out, bool onlyUniqueId);
    static std::string createXMLReceivedCallItemBody(const ReceivedCallItem& item, bool onlyUniqueId);
    static void createXMLReceivedCallInfoList(const ReceivedCallItem& item, std::string& out);
    static void getXMLReceivedCallInfo(const char* xml, ReceivedCallItem::ReceivedCallInfo& info);
    static bool getXMLReceivedCallInfoList(const char* xml, std::list<ReceivedCallItem::ReceivedCallInfo>& list);
    static void parseXMLReceivedCallItem(const char* xml, ReceivedCallItem& item);

    static void createXMLForwardedCallItemBody(const ForwardedCallItem& item, std::string& out, bool onlyUniqueId);
    static std::string createXMLForwardedCallItemBody(const ForwardedCallItem& item, bool onlyUniqueId);
    static void createXMLForwardedCallInfoList(const ForwardedCallItem& item, std::string& out);
    static void getXMLForwardedCallInfo(const char* xml, ForwardedCallItem::ForwardedCallInfo& info);
    static bool getXMLForwardedCallInfoList(const char* xml, std::list<ForwardedCallItem::ForwardedCallInfo>& list);
    static void parseXMLForwardedCallItem(const char* xml, ForwardedCallItem& item);

    // Notifications to observers of the journal. They carry no schema element and no reason.

    /// Returns the message with the number of unviewed missed entries, in signed decimal.
    static std::string obsReqMissedCallsCountUpdate(unsigned int count);

    /// Return the message on one changed entry: its whole body, the id to delete unless that is empty (not
    /// escaped), and the action.
    static std::string obsReqMissedCallsUpdate(const MissedCallItem& item, std::string uniqueIdToDelete,
                                               JournalServiceObserverIfc::ActionType action);
    static std::string obsReqDialledCallsUpdate(const DialledCallItem& item, std::string uniqueIdToDelete,
                                                JournalServiceObserverIfc::ActionType action);
    static std::string obsReqReceivedCallsUpdate(const ReceivedCallItem& item, std::string uniqueIdToDelete,
                                                 JournalServiceObserverIfc::ActionType action);
    static std::string obsReqForwardedCallsUpdate(const ForwardedCallItem& item, std::string uniqueIdToDelete,
                                                  JournalServiceObserverIfc::ActionType action);

    // The missed call list.

    /// Fills the table of parse tags, once; to be called before the first list is read, while none is being read.
    static void init();

    /// Empties the table of parse tags, while no list is being read.
    static void finit();

    /// Returns the request that reads the missed call list; sending it is the caller's business.
    static std::string readMissedCallList();

    /// Replaces `list` by the entries of the reply, in its order. Always true: of a malformed reply the list holds the
    /// entries whose end was reached. Begin, end and unique ids go to the log at level 6, the reply at level 5.
    static bool parseXMLMissedCallList(const std::string& reply, std::deque<MissedCallItem>& list);

    /// Turns the events of XmlParser into entries. One object reads one reply; the callbacks take it as `userData`.
    /// Other schemas than those of the call log are passed over.
    class CALLJOURNAL_EXPORT MissedCallParser {
    public:
        /// Appends to `output`, which must outlive the parser.
        explicit MissedCallParser(std::deque<MissedCallItem>& output);
        MissedCallParser(const MissedCallParser&) = delete;
        MissedCallParser& operator=(const MissedCallParser&) = delete;
        virtual ~MissedCallParser();

        static void parseRemoteXMLTagBegin(void* userData, const char* name, const char** attributes);
        static void parseRemoteXMLTagEnd(void* userData, const char* name);
        /// Throws std::length_error if `length` is negative.
        static void parseRemoteXMLData(void* userData, const char* text, int length);

        MissedCallItem::MissedCallInfo currentCall;
        MissedCallItem currentEntry;
        std::deque<MissedCallItem>& output;
        CallListDatabaseAdapterData::eParseTag currentTag;  ///< Of the last begin tag; end tags do not change it.
        std::string currentTagName;
        std::string schemaName;   ///< Stays for the rest of the reply.
        std::string callLogType;  ///< "Missed" while entries are taken; stays from entry to entry.
    };
};

#pragma pop_macro("FALSE")
#pragma pop_macro("TRUE")

#endif
