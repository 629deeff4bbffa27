#pragma once

// Numbers shared by the resource script and the code; the resource compiler understands #define only.
#define APPLICATION_ICON 1
#define EDITOR_MANIFEST 100
#define MAIN_MENU 101
#define COMMAND_OPEN 201
#define COMMAND_SAVE_PAGE 202
#define COMMAND_COPY_PAGE 203
#define COMMAND_EXIT 204
// From here on the control's verbs, by their numbers.
#define COMMAND_VERB 300
