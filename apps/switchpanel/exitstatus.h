// Exit statuses of the program, part of its interface.
#pragma once

enum class ExitStatus {
    Healthy = 0,
    Done = 0, //!< of the commands that talk to a switch
    Abnormal = 1,
    Refused = 1,      //!< the switch did not let us in, or refused a command
    Failed = 2,       //!< could not do what was asked for, or wrong usage
    Interrupted = 130 //!< ended by Ctrl-C, as shells report it
};

//! Of two statuses the one that the whole program ends with: 130, then 2, then 1, then 0.
ExitStatus worse(ExitStatus one, ExitStatus other);
