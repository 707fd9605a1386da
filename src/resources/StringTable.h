#pragma once

#include "resources/FormatText.h"

// The texts that people see. The number of a text is a stable id; numbers from 20000 on are the texts that
// were added later.
enum class StringId : int {
    // Views: labels, and the tips of their buttons.
    StyleLabel = 129,
    LayoutLabel = 130,
    EditReference = 132,
    MoveUp = 154,
    MoveDown = 155,
    RotateCounterClockwise = 156,
    Delete = 157,
    EditText = 159,
    AddPicture = 164,
    AddAllPictures = 170,
    RotateClockwise = 180,

    UnexpectedErrorAdvice = 135,
    TemplateErrorCaption = 136,
    TemplateErrorAdvice = 137,
    TemplateAccessCaption = 140,
    CouldNotOpenFile = 146,
    FileDoesNotExist = 147,
    InformTemplateDeveloper = 148,
    TemplateElementNotFound = 149,
    ObjectNameMissing = 152,
    InvalidObjectName = 153,
    SelectPictureFolder = 161,
    InvalidPageFileName = 165,
    EncoderNotFound = 168,
    ImageNotSaved = 169,
    DefaultProjectName = 173,
    GalleryExists = 178,
    FileNotCreated = 185,
    FileNameInvalid = 186,
    CheckFolderAndFileName = 187,
    TemplateKindNotFound = 220,
    UnexpectedErrorCaption = 222,
    SmallPictures = 232,
    MiddlePictures = 233,
    LargePictures = 234,
    ConnectionSucceeded = 12288,
    ConnectionFailed = 12289,
    GettingFolders = 12290,
    Folders = 12291,
    FolderAbove = 12292,
    NewFolder = 12295,
    FileNotCopied = 12545,
    DirectoryNotCreated = 12546,
    ReadOnlyNotCleared = 12547,

    // Template parsing and evaluation.
    UnknownSection = 20000,
    NestedSection,
    InvalidVariableSyntax,
    DuplicateAttribute,
    RequiredAttributeNotFound,
    InvalidCharacterInName,
    OpeningQuoteNotFound,
    UnknownAttribute,
    UnexpectedElse,
    ClosingBracketNotFound,
    IncludeTooDeep,
    NestingTooDeep,
    LoopsTooDeep,

    // Document.
    XmlNotParsed = 20100,
    XmlFileNotFound,
    XmlAttributeNotNumber,
    TemplateNotFound,
    BufferInsufficient,
    PageIndexNotConverted,
    ValueNotConverted,
    PicturesFolderNotFound,

    // Files.
    FileNotWritten = 20200,
    FileNotRead,
    CheckRights,
    FreeDiskSpace,
    CheckPathStillThere,
    ShortenName,
    CheckDisk,
    UnsafeTemporaryFolder,

    // Images.
    SourceNotReadable = 20300,
    PicturePublishedInPart,
    ImageFileNotWritten,
    ImageEmpty,
    ImageNotAFile,
    ImageFormatUnknown,
    ImageDataDamaged,
    ImageDataIncomplete,
    ImageChanged,
    ImageTooLarge,
    ImageSizeImpossible,
    ImageNotEncodable,

    // Command line.
    ProjectExists = 20400,
    NewNeverOverwrites,
    ChooseAnotherName,
    NoSuchLayout,
    NoSuchStyle,
    AvailableNames,
    CheckProgramFolder,
    LayoutsHaveErrors,
    BadLayoutsOfAll,
    CorrectNamedLines,
    WatermarkNotReadable,
    ChooseAnotherWatermark,

    // FTP: words for a status.
    InvalidNameTitle = 20500,
    InvalidNameDescription,
    AbortedTitle,
    AbortedDescription,
    NetworkUnreachableTitle,
    NetworkUnreachableDescription,
    NetworkResetTitle,
    NetworkResetDescription,
    ConnectionAbortedTitle,
    ConnectionAbortedDescription,
    ConnectionResetTitle,
    ConnectionResetDescription,
    TimedOutTitle,
    TimedOutDescription,
    ConnectionRefusedTitle,
    ConnectionRefusedDescription,
    HostDownTitle,
    HostDownDescription,
    NoRouteTitle,
    NoRouteDescription,
    HostNotFoundTitle,
    HostNotFoundDescription,
    UnknownStatusTitle,
    UnknownStatusDescription,

    // FTP destinations.
    DestinationExists = 20700,
    DestinationNamesAreUnique,
    NoSuchDestination,
    NoDestinations,
    CheckDestinationName,
    SeveralDestinations,
    DestinationKeysAre,
    NameDestinationByKey,
    DestinationNotStored,
    DestinationNotRemoved,
    SettingsFileNotWritten,
    AllUsersNeedAdministrator,
    KeyFileUnfit,
    CorrectUserKeyFile,
    CorrectMachineKeyFile,

    // Dialogs.
    ChangedInEachPage = 21000,
    ElementsVisibilityTitle,
    NewGalleryTitle,

    // Views.
    PageDoesNotRespond = 21200,
    VisibilityTip,
    LayoutTip,
    StyleTip,
    DeployCommand,
    DeployTip,
    RecentProjectsTip,
    PageNotGenerated,
};

// The text as it stands, its "%" included.
QString Text(StringId id);

// The text with its placeholders filled in order, see FormatText.
template <class... Arguments>
QString Text(StringId id, const CFormatArgument& first, const Arguments&... others)
{
    return FormatText(Text(id), {first, CFormatArgument(others)...});
}
