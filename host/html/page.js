"use strict";
document.documentElement.dataset.scripted = "";
