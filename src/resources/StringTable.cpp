#include "resources/StringTable.h"

namespace {

const char* FindText(StringId id)
{
    switch (id) {
    case StringId::ProgramName:
        return "Vistorama";
    case StringId::ImageGalleries:
        return "Image galleries";

    case StringId::StyleLabel:
        return " Style: ";
    case StringId::LayoutLabel:
        return " Layout: ";
    case StringId::EditReference:
        return "Edit hypertext reference URL and text";
    case StringId::MoveUp:
        return "Move up";
    case StringId::MoveDown:
        return "Move down";
    case StringId::RotateCounterClockwise:
        return "Rotate counter-clockwise";
    case StringId::Delete:
        return "Delete";
    case StringId::EditText:
        return "Edit text";
    case StringId::AddPicture:
        return "Add picture";
    case StringId::InsertContentSection:
        return "Insert content section";
    case StringId::InsertChildSection:
        return "Insert child section";
    case StringId::AddAllPictures:
        return "Add all pictures";
    case StringId::LocateFolder:
        return "Locate folder with pictures";
    case StringId::ChooseFolderFromList:
        return "Choose pictures folder from the list";
    case StringId::PicturesWord:
        return "pictures";
    case StringId::PictureWord:
        return "picture";
    case StringId::RotateClockwise:
        return "Rotate clockwise";
    case StringId::GalleryTree:
        return "Gallery tree";
    case StringId::Sections:
        return "sections";
    case StringId::Section:
        return "section";

    case StringId::UnexpectedErrorAdvice:
        return "Please send detailed information to customer support service.";
    case StringId::TemplateErrorCaption:
        return "Template parsing error occured.";
    case StringId::TemplateErrorAdvice:
        return "Please contact template developer.";
    case StringId::TemplateAccessCaption:
        return "Could not access template.";
    case StringId::CouldNotOpenFile:
        return "Could not open file %s.";
    case StringId::FileDoesNotExist:
        return "Probably the file does not exist.";
    case StringId::InformTemplateDeveloper:
        return "Please inform your gallery template developer.";
    case StringId::TemplateElementNotFound:
        return "Could not find template element '%hs'.";
    case StringId::ObjectNameMissing:
        return "ERROR:Invalid template variable syntax. Object name was not specified.";
    case StringId::InvalidObjectName:
        return "ERROR:Invalid object name: %s.";
    case StringId::SelectPictureFolder:
        return "Select picture folder...";
    case StringId::InvalidPageFileName:
        return "Invalid template page file name '%s'. The name of a page needs an extension.";
    case StringId::EncoderNotFound:
        return "Could not find encoder for '%s'.";
    case StringId::ImageNotSaved:
        return "Could not save image to '%s'.";
    case StringId::DefaultProjectName:
        return "My Vistorama";
    case StringId::GalleryExists:
        return "Gallery with name '%s' already exists.\n Please change the new gallery name.";
    case StringId::FileNotCreated:
        return "The system could not create a new file %s.";
    case StringId::FileNameInvalid:
        return "Probably the file name is invalid.";
    case StringId::CheckFolderAndFileName:
        return "Please check the folder existence and the file name correctness.";
    case StringId::TemplateKindNotFound:
        return "Required template kind %s was not find.";
    case StringId::UnexpectedErrorCaption:
        return "Unexpected error occured.";
    case StringId::SmallPictures:
        return "Small pictures (<200x200 pixels)";
    case StringId::MiddlePictures:
        return "Mid-size pictures (200x200<600x600)";
    case StringId::LargePictures:
        return "Large pictures (>600x600)";
    case StringId::ConnectionSucceeded:
        return "Connection succeed.\r\n\r\n";
    case StringId::ConnectionFailed:
        return "Connection failed. See below\r\n\r\n";
    case StringId::GettingFolders:
        return "Getting folders";
    case StringId::Folders:
        return "Folders";
    case StringId::FolderAbove:
        return "..";
    case StringId::NewFolder:
        return "New";
    case StringId::FileNotCopied:
        return "Could not copy file %s to %s.";
    case StringId::DirectoryNotCreated:
        return "Could not create directory %s.";
    case StringId::ReadOnlyNotCleared:
        return "Could not clear readonly attribute for file %s.";

    case StringId::UnknownSection:
        return "Unknown template section '%hs'.";
    case StringId::NestedSection:
        return "Unexpected nested template section.";
    case StringId::InvalidVariableSyntax:
        return "Invalid syntax of variable template section: %s. Variable section syntax: "
               "<%%=object.variable_name%%>.";
    case StringId::DuplicateAttribute:
        return "Duplicate attribute found '%hs'.";
    case StringId::RequiredAttributeNotFound:
        return "Required attribute not found '%hs'.";
    case StringId::InvalidCharacterInName:
        return "Invalid character '%hc' found in attribute name.";
    case StringId::OpeningQuoteNotFound:
        return "Opening quotation mark not found in attribute %hs value.";
    case StringId::UnknownAttribute:
        return "Unknown attribute '%hs'.";
    case StringId::UnexpectedElse:
        return "Unexpected <%else%> element found.";
    case StringId::ClosingBracketNotFound:
        return "Could not find element closing bracket '%>'.";
    case StringId::IncludeTooDeep:
        return "The file %s is included more than %d levels deep. Probably it includes itself.";
    case StringId::NestingTooDeep:
        return "Template sections are nested more than %d levels deep, those of included files counted.";
    case StringId::LoopsTooDeep:
        return "Blog sections are nested more than %d levels deep, those of included files counted.";

    case StringId::XmlNotParsed:
        return "Error occured during xml file parsing.\n File name: %s\n Error reason: %s. Line: %d";
    case StringId::XmlFileNotFound:
        return "The file does not exist";
    case StringId::XmlAttributeNotNumber:
        return "The value '%s' of the attribute '%s' is not a number";
    case StringId::TemplateNotFound:
        return "Template could not be found %s";
    case StringId::BufferInsufficient:
        return "Buffer insufficient.";
    case StringId::PageIndexNotConverted:
        return "Could not convert page index to string";
    case StringId::ValueNotConverted:
        return "A value could not be converted to text.";
    case StringId::PicturesFolderNotFound:
        return "The system names no folder for your pictures.";

    case StringId::FileNotWritten:
        return "Could not write file %s.";
    case StringId::FileNotRead:
        return "Could not read file %s.";
    case StringId::CheckRights:
        return "Please check that you have the right to write there.";
    case StringId::FreeDiskSpace:
        return "Please free some disk space and try again.";
    case StringId::CheckPathStillThere:
        return "Please check that the folder is still there, and that its disk is connected.";
    case StringId::ShortenName:
        return "Please choose a shorter name.";
    case StringId::CheckDisk:
        return "Please check the disk and try again.";
    case StringId::UnsafeTemporaryFolder:
        return "The folder %s for temporary files does not belong to you alone. Please remove it or correct "
               "its owner.";

    case StringId::SourceNotReadable:
        return "The picture '%s' could not be read: %s";
    case StringId::PicturePublishedInPart:
        return "The picture '%s' is damaged. It was published as far as it could be read.";
    case StringId::ImageFileNotWritten:
        return "The file '%s' could not be written: %s.";
    case StringId::ImageEmpty:
        return "It is empty.";
    case StringId::ImageNotAFile:
        return "It is not a file.";
    case StringId::ImageFormatUnknown:
        return "It is not a picture of a known format.";
    case StringId::ImageDataDamaged:
        return "Its data is damaged.";
    case StringId::ImageDataIncomplete:
        return "Its data is damaged or incomplete.";
    case StringId::ImageChanged:
        return "It was replaced by another picture in the meantime.";
    case StringId::ImageTooLarge:
        return "Its size of %d by %d pixels is too large.";
    case StringId::ImageSizeImpossible:
        return "A picture of %d by %d pixels can't be made.";
    case StringId::ImageNotEncodable:
        return "A picture of %d by %d pixels can't be saved in this format.";

    case StringId::ProjectExists:
        return "The project %s exists already.";
    case StringId::NewNeverOverwrites:
        return "A new project is never written over another one.";
    case StringId::ChooseAnotherName:
        return "Please choose another name.";
    case StringId::NoSuchLayout:
        return "There is no layout named '%s'.";
    case StringId::NoSuchStyle:
        return "There is no style named '%s'.";
    case StringId::AvailableNames:
        return "Available are: %s.";
    case StringId::CheckProgramFolder:
        return "Please check the name, and that the layouts and styles of the program are installed.";
    case StringId::LayoutsHaveErrors:
        return "There are errors in layouts.";
    case StringId::BadLayoutsOfAll:
        return "Layouts with errors: %d of %d.";
    case StringId::CorrectNamedLines:
        return "Please correct the lines that are named on standard output.";

    case StringId::InvalidNameTitle:
        return "Invalid name";
    case StringId::InvalidNameDescription:
        return "A name holds a line break or a zero character. No server can be asked for it.";
    case StringId::AbortedTitle:
        return "Operation aborted";
    case StringId::AbortedDescription:
        return "An operation was canceled.";
    case StringId::NetworkUnreachableTitle:
        return "Network is unreachable";
    case StringId::NetworkUnreachableDescription:
        return "This usually means the local software knows no route to reach the remote host.";
    case StringId::NetworkResetTitle:
        return "Network dropped connection on reset";
    case StringId::NetworkResetDescription:
        return "The connection has been broken due to keep-alive activity detecting a failure while the "
               "operation was in progress.";
    case StringId::ConnectionAbortedTitle:
        return "Software caused connection abort";
    case StringId::ConnectionAbortedDescription:
        return "An established connection was aborted by the software in your host computer, possibly due to "
               "a data transmission time-out or protocol error.";
    case StringId::ConnectionResetTitle:
        return "Connection reset by peer";
    case StringId::ConnectionResetDescription:
        return "An existing connection was forcibly closed by the remote host. This normally results if the "
               "peer application on the remote host is suddenly stopped, the host is rebooted, the host or "
               "remote network interface is disabled";
    case StringId::TimedOutTitle:
        return "Connection timed out";
    case StringId::TimedOutDescription:
        return "A connection attempt failed because the connected party did not properly respond after a "
               "period of time, or the established connection failed because the connected host has failed "
               "to respond.";
    case StringId::ConnectionRefusedTitle:
        return "Connection refused";
    case StringId::ConnectionRefusedDescription:
        return "No connection could be made because the target computer actively refused it. This usually "
               "results from trying to connect to a service that is inactive on the foreign host—that is, "
               "one with no server application running.";
    case StringId::HostDownTitle:
        return "Host is down";
    case StringId::HostDownDescription:
        return "A socket operation failed because the destination host is down.";
    case StringId::NoRouteTitle:
        return "No route to host";
    case StringId::NoRouteDescription:
        return "A socket operation was attempted to an unreachable host.";
    case StringId::HostNotFoundTitle:
        return "Host not found";
    case StringId::HostNotFoundDescription:
        return "No such host is known.";
    case StringId::UnknownStatusTitle:
        return "Unknown error";
    case StringId::UnknownStatusDescription:
        return "No additional information is available";

    case StringId::DestinationExists:
        return "A destination named '%s' exists already.";
    case StringId::DestinationNamesAreUnique:
        return "A new destination needs a name of its own.";
    case StringId::NoSuchDestination:
        return "There is no destination named '%s'.";
    case StringId::NoDestinations:
        return "No destination is stored.";
    case StringId::CheckDestinationName:
        return "Please check the name, or add the destination first.";
    case StringId::SeveralDestinations:
        return "Several destinations are named '%s'.";
    case StringId::DestinationKeysAre:
        return "Their numbers are: %s.";
    case StringId::NameDestinationByKey:
        return "Please give the number of the one that you mean.";
    case StringId::DestinationNotStored:
        return "The destination '%s' could not be stored.";
    case StringId::DestinationNotRemoved:
        return "The destination '%s' could not be removed.";
    case StringId::SettingsFileNotWritten:
        return "The settings file %s could not be written.";
    case StringId::AllUsersNeedAdministrator:
        return "Destinations for all users can be changed by an administrator only.";
    case StringId::KeyFileUnfit:
        return "Its password can't be protected: the key file %s is damaged, or has the wrong owner or mode, "
               "or "
               "could not be made.";
    case StringId::CorrectUserKeyFile:
        return "Please give the key file to your user with mode 600. If it is damaged, remove it: a new one "
               "is "
               "made, and stored passwords have to be typed again.";
    case StringId::CorrectMachineKeyFile:
        return "Please let an administrator give the key file to root with mode 644. If it is damaged, "
               "remove "
               "it: a new one is made, and stored passwords have to be typed again.";

    case StringId::UploadFailed:
        return "An error occured during upload a new web gallery to Internet site.";
    case StringId::UploadConnectionLost:
        return "Connection with internet site has been lost during uploading. Windows sockets subsystem "
               "return the following error code: %x.";
    case StringId::UploadNotConnected:
        return "Could not connect to the Internet site. Windows sockets subsystem return the following error "
               "code: %x.";
    case StringId::UploadLater:
        return "Please try to upload your gallery later.";
    case StringId::UploadRefused:
        return "FTP server returns an error: %s.";
    case StringId::CheckSiteParameters:
        return "Please check FTP site parameters and destination directory.";

    case StringId::FolderNotListed:
        return "The folder '%s' on the server %s could not be listed.";
    case StringId::FolderNotMade:
        return "The folder '%s' could not be made on the server %s.";
    case StringId::FolderNotRenamed:
        return "'%s' could not be renamed on the server %s.";
    case StringId::NetworkFailed:
        return "%s. %s";
    case StringId::CheckServerAndTryAgain:
        return "Please check the name of the server and your connection, and try again.";
    case StringId::ChooseNameWithoutLineBreaks:
        return "Please choose a name without line breaks.";
    case StringId::WatermarkNotReadable:
        return "The watermark %s can't be used.";
    case StringId::ChooseAnotherWatermark:
        return "Please choose another picture for the watermark.";
    case StringId::AttributeNeverRead:
        return "warning: The attribute '%hs' is unknown here and never read.";
    case StringId::IdBoundTwice:
        return "warning: The id '%s' is bound a second time: both places show the same picture.";
    case StringId::NoPlaceForPictures:
        return "warning: The page is multipage and has no place for a picture, so that only one page is "
               "written.";

    case StringId::FileMenu:
        return "&File";
    case StringId::GalleryMenu:
        return "&Gallery";
    case StringId::EffectsMenu:
        return "&Effects";
    case StringId::SourceMenu:
        return "&Source";
    case StringId::HelpMenu:
        return "&Help";
    case StringId::NewCommand:
        return "&New";
    case StringId::NewTip:
        return "Begin a new project";
    case StringId::OpenCommand:
        return "&Open...";
    case StringId::OpenTip:
        return "Open another project";
    case StringId::SaveCommand:
        return "&Save";
    case StringId::SaveTip:
        return "Save the project";
    case StringId::SaveAsCommand:
        return "Save &As...";
    case StringId::SaveAsTip:
        return "Save the project under another name";
    case StringId::ExitCommand:
        return "E&xit";
    case StringId::ExitTip:
        return "Save the project and end the program";
    case StringId::DeployCommand:
        return "&Deploy...";
    case StringId::DeployTip:
        return "Write the finished site to a folder or to a server";
    case StringId::LayoutCommand:
        return "&Layout";
    case StringId::LayoutTip:
        return "Choose how the pages of the gallery are laid out";
    case StringId::StyleCommand:
        return "&Style";
    case StringId::StyleTip:
        return "Choose how the pages of the gallery look";
    case StringId::WatermarkCommand:
        return "&Image watermark...";
    case StringId::WatermarkTip:
        return "Lay a picture over the gallery's pictures";
    case StringId::SignatureCommand:
        return "&Image signature...";
    case StringId::SignatureTip:
        return "Write a text over the gallery's pictures";
    case StringId::AdsCommand:
        return "&Ads...";
    case StringId::AdsTip:
        return "Edit the advertisement blocks of the page";
    case StringId::OpenFolderCommand:
        return "&Open folder...";
    case StringId::OpenFolderTip:
        return "Choose the folder that pictures are taken from";
    case StringId::AboutCommand:
        return "&About Vistorama...";
    case StringId::AboutTip:
        return "What this program is";
    case StringId::PrintCommand:
        return "&Print...";
    case StringId::PrintTip:
        return "Print the page";
    case StringId::UndoCommand:
        return "&Undo";
    case StringId::UndoTip:
        return "Take back the last change of the text";
    case StringId::CutCommand:
        return "Cu&t";
    case StringId::CutTip:
        return "Move the selected text to the clipboard";
    case StringId::CopyCommand:
        return "&Copy";
    case StringId::CopyTip:
        return "Copy the selected text to the clipboard";
    case StringId::PasteCommand:
        return "&Paste";
    case StringId::PasteTip:
        return "Insert the text of the clipboard";
    case StringId::ClearCommand:
        return "&Delete";
    case StringId::ClearTip:
        return "Delete the selected text";
    case StringId::NextPaneCommand:
        return "&Next pane";
    case StringId::NextPaneTip:
        return "Go to the next of the three views";
    case StringId::PreviousPaneCommand:
        return "&Previous pane";
    case StringId::PreviousPaneTip:
        return "Go to the view before";
    case StringId::SaveProjectTitle:
        return "Save project as";
    case StringId::OpenProjectTitle:
        return "Open project";
    case StringId::SaveElsewhere:
        return "Save &as...";
    case StringId::CloseWithoutSaving:
        return "&Close without saving";
    case StringId::PicturesDropped:
        return "%d pictures added.";
    case StringId::NotAProject:
        return "The file %s is not a gallery project.";
    case StringId::ProjectsEndInGallery:
        return "The name of a project ends in \".gallery\".";
    case StringId::ChooseProjectFile:
        return "Please choose the file of a project, or drop pictures on the window to add them.";
    case StringId::AboutTitle:
        return "About Vistorama";
    case StringId::AboutVersion:
        return "Version %s";
    case StringId::AboutText:
        return "Turns folders of photographs into a finished web site of picture galleries: point at what "
               "you want to change, and deploy the site to a folder or to a server.";
    case StringId::NoDisplay:
        return "There is no display: neither DISPLAY nor WAYLAND_DISPLAY is set.\n";
    case StringId::DesktopUsage:
        return "Usage:\n"
               "  vistorama [PROJECT.gallery]\n"
               "  vistorama --help | --version\n"
               "Without a project it opens the one that was open last. vistorama-cli does the same work "
               "without a display.\n";
    case StringId::FailureTitle:
        return "Vistorama: please note";
    case StringId::ReadOnlyProject:
        return "%s (read-only)";
    case StringId::ProjectOpenElsewhere:
        return "The project \"%s\" is open in another window.";
    case StringId::ProjectOpenOnComputer:
        return "The project \"%s\" is open on the computer \"%s\".";
    case StringId::OpenElsewhereHint:
        return "If two windows change one project, the changes of one of them are lost. You can open "
               "it here as read-only: look at it, deploy it, and save it under another name.";
    case StringId::OpenReadOnly:
        return "Open &Read-only";
    case StringId::OpenAnyway:
        return "Open &Anyway";
    case StringId::ProjectNotSaved:
        return "The project %s was not saved.";
    case StringId::ProjectIsReadOnly:
        return "It is open elsewhere, so that it was opened here as read-only.";
    case StringId::SaveUnderOtherName:
        return "Save it under another name by \"Save as\" in the menu \"File\".";
    case StringId::ProjectSavedAgain:
        return "The project is saved again.";
    case StringId::AboutMadeWith:
        return "Made with Qt %s and Qt WebEngine, libvips, Cairo, Pango, pugixml and libsodium.";

    case StringId::ChangedInEachPage:
        return "Note: This text will be changed in each gallery page";
    case StringId::ElementsVisibilityTitle:
        return "Change page elements visibility";
    case StringId::NewGalleryTitle:
        return "New pictures gallery";

    case StringId::WatermarkTitle:
        return "Image watermark";
    case StringId::ChooseWatermark:
        return "Choose a watermark picture";
    case StringId::PictureFilesFilter:
        return "Pictures (*.png *.jpg *.jpeg *.gif *.bmp *.pcx *.PNG *.JPG *.JPEG *.GIF *.BMP *.PCX);;All "
               "files "
               "(*)";
    case StringId::SignatureTitle:
        return "Image signature";
    case StringId::ChooseFont:
        return "Choose a font";
    case StringId::ChooseColour:
        return "Choose a colour";
    case StringId::FontWithSize:
        return "%s, %d";
    case StringId::AdvertisementsTitle:
        return "Advertisement blocks";
    case StringId::NoAdvertisementSections:
        return "The layout of this page has no advertisement blocks.";
    case StringId::FtpTaskTitle:
        return "FTP Task";
    case StringId::BrowseFolderTitle:
        return "Browse Folder";
    case StringId::ListOutputTitle:
        return "LIST command output";

    case StringId::PageDoesNotRespond:
        return "The page does not respond. Probably a script of the layout never ends.";
    case StringId::PageNotGenerated:
        return "The page could not be made:";
    case StringId::VisibilityCommand:
        return "Visibility";
    case StringId::VisibilityTip:
        return "Show and hide elements of the page";
    case StringId::RecentProjectsTip:
        return "Recent projects";

    case StringId::RecentFoldersName:
        return "Recent folders";
    case StringId::FolderHasNoPictures:
        return "This folder has no pictures.";
    case StringId::AllPicturesInGallery:
        return "All pictures of this folder are in the gallery.";
    case StringId::NoFolderChosen:
        return "No folder";
    case StringId::ChooseFolderAdvice:
        return "Choose a folder with pictures by the button above.";
    case StringId::FolderVanished:
        return "This folder is not there:";
    case StringId::FolderVanishedAdvice:
        return "Its pictures come back here when it does: perhaps its disk or card is not connected.";
    case StringId::FolderNotReadable:
        return "You have no right to read this folder:";
    case StringId::FolderNotReadableAdvice:
        return "Ask its owner for the right, or choose another folder.";
    case StringId::FolderNotShown:
        return "The thumbnails of this folder could not be made:";

    case StringId::DeployWizardTitle:
        return "Deploy Wizard";
    case StringId::GalleryWizardTitle:
        return "Gallery deployment wizard.";
    case StringId::WizardMessageTitle:
        return "Gallery deployment wizard";
    case StringId::ChooseDestination:
        return "Please select where you would like to deploy your gallery.";
    case StringId::NewConnection:
        return "New Internet connection";
    case StringId::DeleteConnectionQuestion:
        return "Delete Internet connection '%s'?";
    case StringId::FolderPathTitle:
        return "Folder path";
    case StringId::FolderPathSubtitle:
        return "Please select a local folder path here.";
    case StringId::FolderPickerCaption:
        // Not what the dialog is about; the caption has always been this.
        return "Hypertext reference menu";
    case StringId::DeployToFolderTitle:
        return "Deploying gallery to local disk folder.";
    case StringId::OpenBrowserWhenFinished:
        return "&Open web browser window with a new gallery when finished";
    case StringId::DeployedPages:
        return "Deployed pages: %d of %d. ";
    case StringId::ConnectionTitle:
        return "FTP connection";
    case StringId::ConnectionSubtitle:
        return "Please configure FTP connection here.";
    case StringId::ShareConnection:
        return "&Make this FTP connection available for other users of this computer";
    case StringId::SharingNeedsAdministrator:
        return "Only an administrator of this computer can do that.";
    case StringId::TestingConnection:
        return "Testing FTP connection, please wait ...";
    case StringId::ServerNameInvalid:
        return "Connection test has failed. Server name is invalid.";
    case StringId::LoginInvalid:
        return "Connection test has failed. Please check user name, password and try again.";
    case StringId::SiteDirectoryTitle:
        return "Internet site gallery directory.";
    case StringId::SiteDirectorySubtitle:
        return "Please select  Internet site gallery directory here.";
    case StringId::DeployToSiteTitle:
        return "Deploying gallery to Internet site.";
    case StringId::GeneratingStep:
        return "Step 1 of 3. Generating gallery content...";
    case StringId::PreparingStep:
        return "Step 2 of 3. Preparing upload file list and destination directory...";
    case StringId::UploadingStep:
        return "Step 3 of 3. Uploading gallery files...";
    case StringId::UploadingFile:
        return "Uploading file: %s.";
    case StringId::UploadDone:
        return "The gallery has uploaded successfully!";
    case StringId::CancellingGeneration:
        return "Cancelling. The files in progress are finished first.";
    case StringId::CancellingUpload:
        return "Cancelling. The file in progress is sent to its end first.";
    case StringId::DeployErrorTitle:
        return "Gallery deployment has finished with errors.";
    case StringId::PasswordNotProtected:
        return "Its password can't be protected, so it was stored without one.";
    }
    return "";
}

} // namespace

QString Text(StringId id)
{
    return QString::fromUtf8(FindText(id));
}
