/* What the files of the PHP binding share. */
#pragma once

#include "engine.h"

#include <stdbool.h>

#include <velmora.h>

/* The globals of the module, exported under these names. */
extern zend_class_entry* sepa_ce;
extern zend_class_entry* sepa_ce_exception;
extern zend_object_handlers sepa_object_handlers;
extern zend_class_entry* sepaStP_ce;
extern zend_object_handlers sepaStP_object_handlers;

/* Code of the exceptions that the binding's own checks throw; what the library reports carries 0. */
enum { BINDING_ERROR = 42 };

/* Complete a class that has just been registered with its methods. */
void sepa_class_init(zend_class_entry* entry);
void sepaStP_init(zend_class_entry* entry);
