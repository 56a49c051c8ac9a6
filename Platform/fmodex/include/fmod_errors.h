// The results of the sound layer in words.
#ifndef FMOD_ERRORS_H
#define FMOD_ERRORS_H

#include "fmod.h"

/// Puts a result into an English sentence, which lives for ever. Values that are no result have one too.
static inline const char* FMOD_ErrorString(FMOD_RESULT result) {
    switch (result) {
    case FMOD_OK:
        return "All is well.";
    case FMOD_ERR_HANDLE:
        return "This handle belongs to nothing, or to something that is over.";
    case FMOD_ERR_ARGUMENT:
        return "An argument is out of its range.";
    case FMOD_ERR_NOT_INITIALISED:
        return "The sound system has not been initialised.";
    case FMOD_ERR_INITIALISED:
        return "The sound system has been initialised before.";
    case FMOD_ERR_MEMORY:
        return "There is not enough memory for the sound.";
    case FMOD_ERR_FILE_MISSING:
        return "The music file does not exist.";
    case FMOD_ERR_FILE_UNREADABLE:
        return "The music file cannot be read.";
    case FMOD_ERR_FILE_FOLDER:
        return "The music file is a folder.";
    case FMOD_ERR_FILE_EMPTY:
        return "The music file is empty.";
    case FMOD_ERR_FILE_NOT_MP3:
        return "The music file is not an MP3.";
    case FMOD_RESULT_LOWEST:
    default:
        return "The sound layer gave an unknown answer.";
    }
}

#endif
