#pragma once

#include <algorithm>
#include <array>
#include <string_view>

namespace tarnix {

// A fixed text of the program in each language that it speaks. The key is how the program names it.
struct LocalizedString {
  std::string_view key;
  std::string_view english;
  std::string_view german;
};

constexpr std::array kLocalizedStrings = std::to_array<LocalizedString>({
    // The main window.
    {"Tarnix", "Tarnix", "Tarnix"},
    {"Active", "Active", "Aktiv"},
    {"Clear list", "Clear list", "Liste leeren"},
    {"Clear list of saved clips", "Clear list of saved clips", "Liste der gemerkten Clips leeren"},
    {"Are you sure?", "Are you sure?", "Sind Sie sicher?"},
    {"You are going to clear the list of saved clips; this action cannot be reverted!",
     "You are going to clear the list of saved clips; this action cannot be reverted!",
     "Sie sind dabei, die Liste der gemerkten Clips zu leeren; das lässt sich nicht rückgängig machen!"},
    {"Delete all clips", "Delete all clips", "Alle Clips löschen"},
    {"Cancel", "Cancel", "Abbrechen"},
    {"No clip selected", "No clip selected", "Kein Clip ausgewählt"},
    {"Select a clip from the clipboard on the left\nto see more details",
     "Select a clip from the clipboard on the left\nto see more details",
     "Wählen Sie links einen Clip aus der Zwischenablage,\num mehr darüber zu sehen"},
    {"Search", "Search", "Suchen"},
    {"Filters the list of clips", "Filters the list of clips", "Filtert die Liste der Clips"},
    {"Clear search", "Clear search", "Suche leeren"},
    {"No results", "No results", "Keine Treffer"},
    {"Empty text", "Empty text", "Leerer Text"},
    {"Blank text", "Blank text", "Nur Leerraum"},
    {"Toggle Sidebar", "Toggle Sidebar", "Seitenleiste ein- oder ausblenden"},
    {"Sidebar width", "Sidebar width", "Breite der Seitenleiste"},
    // The clip on show.
    {"Text", "Text", "Text"},
    {"File", "File", "Datei"},
    {"Rich Text", "Rich Text", "Formatierter Text"},
    {"Cannot preview content", "Cannot preview content", "Keine Vorschau des Inhalts möglich"},
    {"File path:", "File path:", "Dateipfad:"},
    {"Show in Finder", "Show in File Manager", "In der Dateiverwaltung anzeigen"},
    {"Copy item back to the main clipboard", "Copy item back to the main clipboard",
     "Clip wieder in die Zwischenablage legen"},
    {"Content Type", "Content Type", "Inhaltstypen"},
    {"Information", "Information", "Informationen"},
    {"Copy", "Copy", "Kopieren"},
    // The preview of a file.
    {"Loading…", "Loading…", "Wird geladen …"},
    {"The file does not exist any more", "The file does not exist any more", "Die Datei gibt es nicht mehr"},
    {"You may not read this file", "You may not read this file", "Sie dürfen diese Datei nicht lesen"},
    {"This is neither a file nor a folder", "This is neither a file nor a folder",
     "Das ist weder eine Datei noch ein Ordner"},
    {"The link leads back to itself", "The link leads back to itself",
     "Die Verknüpfung führt zu sich selbst zurück"},
    {"The name is too long", "The name is too long", "Der Name ist zu lang"},
    {"The file can't be read", "The file can't be read", "Die Datei lässt sich nicht lesen"},
    {"The picture is too large: %1 by %2", "The picture is too large: %1 by %2",
     "Das Bild ist zu groß: %1 mal %2"},
    {"The file takes too much memory", "The file takes too much memory",
     "Die Datei braucht zu viel Speicher"},
    {"The file is damaged", "The file is damaged", "Die Datei ist beschädigt"},
    {"The document is encrypted", "The document is encrypted", "Das Dokument ist verschlüsselt"},
    {"The file takes too long to read", "The file takes too long to read",
     "Die Datei lässt sich nicht schnell genug lesen"},
    {"The previewer can't be started", "The previewer can't be started",
     "Die Vorschau lässt sich nicht starten"},
    {"The file can't be understood", "The file can't be understood", "Die Datei ist unverständlich"},
    {"The previewer failed", "The previewer failed", "Die Vorschau ist gescheitert"},
    {"No preview: %1", "No preview: %1", "Keine Vorschau: %1"},
    {"Image, %1 by %2", "Image, %1 by %2", "Bild, %1 mal %2"},
    {"PDF, 1 page", "PDF, 1 page", "PDF, 1 Seite"},
    {"PDF, %1 pages", "PDF, %1 pages", "PDF, %1 Seiten"},
    {"Folder, %1 items and more", "Folder, %1 items and more", "Ordner, %1 Objekte und mehr"},
    {"Folder, 1 item", "Folder, 1 item", "Ordner, 1 Objekt"},
    {"Folder, %1 items", "Folder, %1 items", "Ordner, %1 Objekte"},
    {"The first %1 of %2", "The first %1 of %2", "Die ersten %1 von %2"},
    {"Modified %1", "Modified %1", "Geändert %1"},
    {"Created %1", "Created %1", "Erstellt %1"},
    {"1 byte", "1 byte", "1 Byte"},
    // The menus of texts. What follows an ampersand is the key that chooses the item.
    {"&Undo", "&Undo", "&Rückgängig"},
    {"&Redo", "&Redo", "&Wiederherstellen"},
    {"Cu&t", "Cu&t", "&Ausschneiden"},
    {"&Copy", "&Copy", "&Kopieren"},
    {"&Paste", "&Paste", "&Einfügen"},
    {"Delete", "Delete", "Löschen"},
    {"Select All", "Select All", "Alles auswählen"},
});

// Null where the table lacks the key.
constexpr const LocalizedString* localizedStringFor(std::string_view key) {
  const auto found = std::ranges::find(kLocalizedStrings, key, &LocalizedString::key);
  return found == kLocalizedStrings.end() ? nullptr : &*found;
}

// A key that the table has; another one doesn't compile.
class LocalizedKey {
 public:
  consteval LocalizedKey(const char* key) : string_(localizedStringFor(key)) {
    if (string_ == nullptr) throw "this text is in no language yet";
  }
  constexpr std::string_view key() const { return string_->key; }

 private:
  const LocalizedString* string_;
};

}  // namespace tarnix
