; What is declared.
(class_specifier name: (_) @name body: (_) @body) @declaration
(function_definition declarator: (reference_declarator (function_declarator declarator: (identifier) @name)) body: (_) @body) @declaration
(function_definition declarator: (function_declarator declarator: [(field_identifier) (destructor_name) (operator_name)] @name)) @declaration
(function_definition declarator: (pointer_declarator declarator: (function_declarator declarator: [(field_identifier) (operator_name)] @name))) @declaration
(function_definition declarator: (reference_declarator (function_declarator declarator: [(field_identifier) (operator_name)] @name))) @declaration
(function_definition declarator: (function_declarator declarator: (qualified_identifier name: [(identifier) (destructor_name) (operator_name)] @name))) @declaration
(function_definition declarator: (pointer_declarator declarator: (function_declarator declarator: (qualified_identifier name: (identifier) @name)))) @declaration
(function_definition declarator: (reference_declarator (function_declarator declarator: (qualified_identifier name: [(identifier) (operator_name)] @name)))) @declaration
(function_definition declarator: (function_declarator declarator: (qualified_identifier name: (qualified_identifier name: [(identifier) (destructor_name) (operator_name)] @name)))) @declaration
(declaration declarator: (reference_declarator (function_declarator declarator: (identifier) @name))) @declaration
(declaration declarator: (function_declarator declarator: [(operator_name) (destructor_name)] @name)) @declaration
(declaration declarator: (reference_declarator (identifier) @name)) @variable
(field_declaration declarator: (function_declarator declarator: [(field_identifier) (operator_name)] @name)) @declaration
(field_declaration declarator: (pointer_declarator declarator: (function_declarator declarator: (field_identifier) @name))) @declaration
(field_declaration declarator: (reference_declarator (function_declarator declarator: [(field_identifier) (operator_name)] @name))) @declaration
(field_declaration declarator: (reference_declarator (field_identifier) @name)) @declaration
(alias_declaration name: (_) @name) @declaration
(concept_definition name: (_) @name) @declaration

; What belongs to the declaration in it.
(template_declaration) @wrapper

; Bodies that are declared above without them.
(function_definition body: (_) @body) @of
(function_definition (field_initializer_list) @body) @of

; What a variable says of itself.
(declaration (type_qualifier) @const (#eq? @const "constexpr")) @constant

; What is hidden.
(namespace_definition !name body: (_) @hidden)
