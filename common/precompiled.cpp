// Gives the precompiled headers of the rooms a target to belong to.
