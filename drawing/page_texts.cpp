#include "page_texts.h"

#include <array>
#include <utility>

namespace vndoc6::drawing {
namespace {

struct Row {
  Word word;
  std::array<const char*, 3> texts;  // in the order of Language
};

// In the order of Word. Of what a page's script says, it puts the numbers in their places.
constexpr Row kTexts[] = {
    {Word::kUntitled, {"Untitled procedure", "Verfahren ohne Titel", "Procédure sans titre"}},
    {Word::kSkipToSteps, {"Skip to the steps", "Zu den Schritten", "Aller aux étapes"}},
    {Word::kSkipToContent, {"Skip to the content", "Zum Inhalt", "Aller au contenu"}},
    {Word::kContents, {"Contents", "Inhalt", "Sommaire"}},
    {Word::kAllProcedures, {"All procedures", "Alle Verfahren", "Toutes les procédures"}},
    {Word::kChart, {"Chart", "Ablaufplan", "Logigramme"}},
    {Word::kTheChart, {"The chart", "Der Ablaufplan", "Le logigramme"}},
    {Word::kZoom, {"Zoom", "Zoom", "Zoom"}},
    {Word::kZoomIn, {"Zoom in", "Vergrößern", "Agrandir"}},
    {Word::kZoomOut, {"Zoom out", "Verkleinern", "Réduire"}},
    {Word::kFit, {"Fit", "Einpassen", "Ajuster"}},
    {Word::kPrintedPage,
     {"Chart, page %1 of %2", "Ablaufplan, Seite %1 von %2", "Logigramme, page %1 sur %2"}},
    {Word::kCode, {"Code", "Kennung", "Référence"}},
    {Word::kRevision, {"Revision", "Revision", "Révision"}},
    {Word::kApproved, {"Approved", "Freigegeben", "Approuvé le"}},
    {Word::kAuthorisedBy, {"Authorised by", "Freigegeben von", "Autorisé par"}},
    {Word::kPurpose, {"Purpose", "Zweck", "Objet"}},
    {Word::kScope, {"Scope", "Geltungsbereich", "Domaine d’application"}},
    {Word::kNotes, {"Notes", "Anmerkungen", "Remarques"}},
    {Word::kForm, {"Form", "Formular", "Formulaire"}},
    {Word::kTakes, {"Takes", "Dauer", "Durée"}},
    {Word::kFurther, {"Further values", "Weitere Angaben", "Autres valeurs"}},
    {Word::kSteps, {"Steps", "Schritte", "Étapes"}},
    {Word::kNoSteps, {"There are no steps.", "Es gibt keine Schritte.", "Il n’y a pas d’étapes."}},
    {Word::kUnnamedStep, {"Step without a label", "Schritt ohne Namen", "Étape sans nom"}},
    {Word::kPartOf, {"Part of", "Teil von", "Fait partie de"}},
    {Word::kHow, {"How", "Anleitung", "Instructions"}},
    {Word::kPerformedBy, {"Performed by", "Ausgeführt von", "Réalisé par"}},
    {Word::kTasks, {"Tasks", "Aufgaben", "Tâches"}},
    {Word::kCondition, {"Condition", "Bedingung", "Condition"}},
    {Word::kConditions, {"Conditions", "Bedingungen", "Conditions"}},
    {Word::kIf, {"if", "falls", "si"}},
    {Word::kDependsOn, {"Depends on", "Hängt ab von", "Dépend de"}},
    {Word::kFiles, {"Files", "Dateien", "Fichiers"}},
    {Word::kJumpsTo, {"Jumps to", "Verweist auf", "Renvoie à"}},
    {Word::kLeadsTo, {"Leads to", "Führt zu", "Mène à"}},
    {Word::kShowInChart,
     {"Show in the chart", "Im Ablaufplan zeigen", "Montrer dans le logigramme"}},
    {Word::kRoles, {"Roles", "Rollen", "Rôles"}},
    {Word::kRolesCaption,
     {"Who performs which steps", "Wer welche Schritte ausführt", "Qui réalise quelles étapes"}},
    {Word::kRole, {"Role", "Rolle", "Rôle"}},
    {Word::kRaci, {"Responsibilities", "Verantwortung", "Responsabilités"}},
    {Word::kRaciCaption, {"Who does what (RACI)", "Wer was tut (RACI)", "Qui fait quoi (RACI)"}},
    {Word::kRaciNote,
     {"R: performs the step. A: authorised the procedure. A document does not say who is consulted "
      "(C) or informed (I).",
      "R: führt den Schritt aus. A: hat das Verfahren freigegeben. Wer befragt (C) oder informiert "
      "(I) wird, sagt ein Dokument nicht.",
      "R : réalise l’étape. A : a autorisé la procédure. Un document ne dit pas qui est consulté "
      "(C) ou informé (I)."}},
    {Word::kStep, {"Step", "Schritt", "Étape"}},
    {Word::kContainers, {"Containers", "Gruppen", "Groupes"}},
    {Word::kContainersCaption,
     {"What belongs together", "Was zusammengehört", "Ce qui va ensemble"}},
    {Word::kName, {"Name", "Name", "Nom"}},
    {Word::kDescription, {"Description", "Beschreibung", "Description"}},
    {Word::kFilesCaption,
     {"Files, and the steps that they belong to", "Dateien und die Schritte, zu denen sie gehören",
      "Fichiers et étapes auxquelles ils appartiennent"}},
    {Word::kFile, {"File", "Datei", "Fichier"}},
    {Word::kJumps, {"Jumps", "Verweise", "Renvois"}},
    {Word::kJumpsCaption,
     {"Other procedures, and the steps that jump to them",
      "Andere Verfahren und die Schritte, die auf sie verweisen",
      "Autres procédures et étapes qui y renvoient"}},
    {Word::kProcedure, {"Procedure", "Verfahren", "Procédure"}},
    {Word::kLooseLinks, {"Loose links", "Lose Verbindungen", "Liens détachés"}},
    {Word::kLooseLinksCaption,
     {"Links that lack a step", "Verbindungen, denen ein Schritt fehlt",
      "Liens auxquels il manque une étape"}},
    {Word::kLink, {"Link", "Verbindung", "Lien"}},
    {Word::kRevisions, {"Revision history", "Änderungsverlauf", "Historique des révisions"}},
    {Word::kRevisionsCaption,
     {"What changed, and when", "Was sich wann geändert hat", "Ce qui a changé, et quand"}},
    {Word::kDate, {"Date", "Datum", "Date"}},
    {Word::kNumber, {"Number", "Nummer", "Numéro"}},
    {Word::kReason, {"Reason", "Grund", "Motif"}},
    {Word::kSiteTitle, {"Procedures", "Verfahren", "Procédures"}},
    {Word::kSearch, {"Search", "Suche", "Recherche"}},
    {Word::kSearchHint,
     {"Titles, steps, roles, files", "Titel, Schritte, Rollen, Dateien",
      "Titres, étapes, rôles, fichiers"}},
    {Word::kFound, {"%1 found", "%1 gefunden", "%1 résultat(s)"}},
    {Word::kNothingFound, {"Nothing found", "Nichts gefunden", "Aucun résultat"}},
    {Word::kProceduresCaption,
     {"The procedures of this site", "Die Verfahren dieser Sammlung", "Les procédures de ce site"}},
    {Word::kJumpsFrom, {"Jumps from", "Verweise von", "Renvois depuis"}},
    {Word::kMap, {"Map", "Übersicht", "Carte"}},
    {Word::kTheMap, {"The map of the jumps", "Die Übersicht der Verweise", "La carte des renvois"}},
    {Word::kMapNote,
     {"An arrow leads to the procedure that is jumped to; dashes mark one that is not part of this "
      "site.",
      "Ein Pfeil führt zu dem Verfahren, auf das verwiesen wird; gestrichelt ist, was nicht zu "
      "dieser Sammlung gehört.",
      "Une flèche mène à la procédure de renvoi ; en pointillé, ce qui ne fait pas partie de ce "
      "site."}},
    {Word::kChartHolds,
     {"A flowchart of %1 steps and %2 links.",
      "Ein Ablaufplan mit %1 Schritten und %2 Verbindungen.",
      "Un logigramme de %1 étapes et %2 liens."}},
    // The shapes have English names.
    {Word::kStepOfShape, {"%1 (%2)", "%1", "%1"}},
    {Word::kPictureNotShown,
     {"A %1 picture, which is not shown", "Ein Bild (%1), das nicht gezeigt wird",
      "Une image (%1) qui n’est pas montrée"}},
};

constexpr bool IsInOrder() {
  for (size_t i = 0; i < std::size(kTexts); ++i) {
    if (kTexts[i].word != static_cast<Word>(i)) return false;
  }
  return std::size(kTexts) == static_cast<size_t>(Word::kCount);
}
static_assert(IsInOrder());

}  // namespace

const char* Words::operator()(Word word) const {
  return kTexts[static_cast<size_t>(word)].texts[static_cast<size_t>(language_)];
}

std::string Words::operator()(Word word, const std::string& first,
                              const std::string& second) const {
  std::string out = (*this)(word);
  for (const auto& [place, text] : {std::pair{"%2", &second}, std::pair{"%1", &first}}) {
    if (const size_t at = out.find(place); at != out.npos) out.replace(at, 2, *text);
  }
  return out;
}

const char* Words::Code() const {
  constexpr std::array kCodes = {"en", "de", "fr"};
  return kCodes[static_cast<size_t>(language_)];
}

}  // namespace vndoc6::drawing
