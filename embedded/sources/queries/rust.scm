; What is declared.
(function_item name: (_) @name body: (_) @body) @declaration
(function_signature_item name: (_) @name) @declaration
(struct_item name: (_) @name) @declaration
(union_item name: (_) @name) @declaration
(enum_item name: (_) @name body: (_) @body) @declaration
(enum_variant name: (_) @name) @declaration
(trait_item name: (_) @name body: (_) @body) @declaration
(type_item name: (_) @name) @declaration
(associated_type name: (_) @name) @declaration
(field_declaration name: (_) @name) @declaration
(macro_definition name: (_) @name) @declaration
(const_item name: (_) @name) @variable @constant
(static_item name: (_) @name) @variable
(mod_item name: (_) @name) @declaration

; What belongs to the declaration below it.
(attribute_item) @attribute

; Bodies, and what a constant holds.
(struct_item body: (field_declaration_list) @body) @of
(union_item body: (_) @body) @of
(mod_item body: (_) @body) @of
(const_item value: (_) @value) @of
(static_item value: (_) @value) @of
(macro_definition "{" @body) @of

; What is public.
(function_item (visibility_modifier)) @exported
(function_signature_item (visibility_modifier)) @exported
(struct_item (visibility_modifier)) @exported
(union_item (visibility_modifier)) @exported
(enum_item (visibility_modifier)) @exported
(trait_item (visibility_modifier)) @exported
(type_item (visibility_modifier)) @exported
(const_item (visibility_modifier)) @exported
(static_item (visibility_modifier)) @exported
(mod_item (visibility_modifier)) @exported

(function_item body: (_) @local)
(closure_expression body: (_) @local)

[(line_comment) (block_comment)] @comment
